// The read-only cursor over the pipeline file and the text buffer every key value passes through.
#ifndef VORN_PIPELINE_PROP_TREE_H
#define VORN_PIPELINE_PROP_TREE_H

#include "pipeline/char_buffer.h"
#include "pipeline/name.h"

// A reusable text buffer with in-place tokenising.
class Property_cl : public CharBuffer_cl {
 public:
  Property_cl();
  ~Property_cl() override;
  Property_cl(const Property_cl&) = delete;
  Property_cl& operator=(const Property_cl&) = delete;

  int GetLength() override { return iLength; }
  char GetChar(int index) override { return iText[index]; }
  char* GetText() { return iText; }
  const char* GetText() const { return iText; }

  // Makes room for length characters (keeping the old text), terminates there and clears the token.
  void SetLength(int length);
  void Reset();

  // Parse the whole buffer; text behind a number is ignored, a value with no leading number is fatal.
  double GetDoubleValue() const;
  int GetIntValue() const;
  // Only "true" or "false", in any mix of cases.
  int GetBooleanValue() const;

  // Splits in place at the next delimiter; the current token is null past the end of the text.
  void NextToken(char delimiter);
  char* GetToken() const { return iToken; }

 private:
  char* iText;
  int iCapacity;
  int iLength;
  char* iToken;
  char* iNextToken;
};

class PropertyTreeIter_cl {
 public:
  virtual ~PropertyTreeIter_cl() = default;
  // The element's tag.
  virtual Name_sptr GetName();
  virtual void GetName(Property_cl* out) = 0;
  virtual int IsNameEqual(const char* name) = 0;
  // The value of an attribute; absent and empty attributes read as not given.
  virtual Name_sptr GetProperty(const char* key);
  virtual Name_sptr GetProperty(const char* key, Name_sptr defaultValue);
  virtual int GetDoubleProperty(const char* key, double* out);
  virtual int GetDoubleProperty(const char* key, double* out, double defaultValue);
  virtual int GetIntProperty(const char* key, int* out);
  virtual int GetIntProperty(const char* key, int* out, int defaultValue);
  virtual int GetBooleanProperty(const char* key, int* out);
  virtual int GetBooleanProperty(const char* key, int* out, int defaultValue);
  virtual int GetProperty(const char* key, Property_cl* out) = 0;
  virtual int IsPropertyEqual(const char* key, const char* value) = 0;
  // Moves this cursor (not a copy) to the first element child, or past the end.
  virtual void FirstChild() = 0;
  virtual void NextSibling() = 0;
  virtual int NotNull() = 0;
  virtual PropertyTreeIter_cl* Clone() = 0;

 protected:
  Property_cl iProperty;
};

#endif
