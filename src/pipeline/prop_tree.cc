// The read-only cursor over the pipeline file and the text buffer every key value passes through.
#include "pipeline/prop_tree.h"

#include <strings.h>

#include <cstdlib>
#include <cstring>
#include <iostream>

namespace {
// Values are short; the buffer starts small and grows to any length, which no output can tell.
constexpr int kInitialCapacity = 256;
}  // namespace

Property_cl::Property_cl() : iCapacity(kInitialCapacity), iLength(0), iToken(nullptr), iNextToken(nullptr) {
  iText = static_cast<char*>(malloc(iCapacity + 1));
  iText[0] = '\0';
}

Property_cl::~Property_cl() { free(iText); }

void Property_cl::SetLength(int length) {
  if (length < 0) length = 0;
  if (length > iCapacity) {
    char* text = static_cast<char*>(malloc(length + 1));
    memcpy(text, iText, iLength + 1);
    free(iText);
    iText = text;
    iCapacity = length;
  }
  iLength = length;
  iText[length] = '\0';
  iToken = nullptr;
  iNextToken = iText;
}

void Property_cl::Reset() {
  iLength = 0;
  iText[0] = '\0';
  iToken = nullptr;
  iNextToken = nullptr;
}

double Property_cl::GetDoubleValue() const {
  char* end;
  double value = strtod(iText, &end);
  if (end == iText) {
    std::cerr << "Property_cl::GetDoubleValue() unrecognized double value: " << iText << std::endl;
    abort();
  }
  return value;
}

int Property_cl::GetIntValue() const {
  char* end;
  long value = strtol(iText, &end, 10);
  if (end == iText) {
    std::cerr << "Property_cl::GetIntValue() unrecognized int value: " << iText << std::endl;
    abort();
  }
  return static_cast<int>(value);
}

int Property_cl::GetBooleanValue() const {
  if (strcasecmp(iText, "true") == 0) return 1;
  if (strcasecmp(iText, "false") == 0) return 0;
  std::cerr << "Property_cl::GetBooleanValue() unrecognized boolean value: " << iText << std::endl;
  abort();
}

void Property_cl::NextToken(char delimiter) {
  if (!iNextToken || iNextToken > iText + iLength) {
    iToken = nullptr;
    return;
  }
  if (iNextToken == iText + iLength) {
    iToken = nullptr;
    iNextToken = nullptr;
    return;
  }
  iToken = iNextToken;
  char* stop = static_cast<char*>(memchr(iToken, delimiter, iText + iLength - iToken));
  if (stop) {
    *stop = '\0';
    iNextToken = stop + 1;
  } else {
    iNextToken = iText + iLength;
  }
}

Name_sptr PropertyTreeIter_cl::GetName() {
  GetName(&iProperty);
  return Name_sptr(new Name_cl(&iProperty));
}

Name_sptr PropertyTreeIter_cl::GetProperty(const char* key) {
  if (!GetProperty(key, &iProperty)) return Name_sptr();
  return Name_sptr(new Name_cl(&iProperty));
}

Name_sptr PropertyTreeIter_cl::GetProperty(const char* key, Name_sptr defaultValue) {
  if (!GetProperty(key, &iProperty)) return defaultValue;
  return Name_sptr(new Name_cl(&iProperty));
}

int PropertyTreeIter_cl::GetDoubleProperty(const char* key, double* out) {
  if (!GetProperty(key, &iProperty)) return 0;
  *out = iProperty.GetDoubleValue();
  return 1;
}

int PropertyTreeIter_cl::GetDoubleProperty(const char* key, double* out, double defaultValue) {
  if (GetDoubleProperty(key, out)) return 1;
  *out = defaultValue;
  return 0;
}

int PropertyTreeIter_cl::GetIntProperty(const char* key, int* out) {
  if (!GetProperty(key, &iProperty)) return 0;
  *out = iProperty.GetIntValue();
  return 1;
}

int PropertyTreeIter_cl::GetIntProperty(const char* key, int* out, int defaultValue) {
  if (GetIntProperty(key, out)) return 1;
  *out = defaultValue;
  return 0;
}

int PropertyTreeIter_cl::GetBooleanProperty(const char* key, int* out) {
  if (!GetProperty(key, &iProperty)) return 0;
  *out = iProperty.GetBooleanValue();
  return 1;
}

int PropertyTreeIter_cl::GetBooleanProperty(const char* key, int* out, int defaultValue) {
  if (GetBooleanProperty(key, out)) return 1;
  *out = defaultValue;
  return 0;
}
