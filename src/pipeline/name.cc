// Shared, reference-counted names.
#include "pipeline/name.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "pipeline/char_buffer.h"

Name_cl::Name_cl(const char* text) { SetText(text, text ? static_cast<int>(strlen(text)) : 0); }

Name_cl::Name_cl(char c) { SetText(&c, 1); }

Name_cl::Name_cl(const char* text, int length) { SetText(text, text ? length : 0); }

Name_cl::Name_cl(CharBuffer_cl* buffer) {
  int length = buffer->GetLength();
  if (length < 1) return;
  iText = static_cast<char*>(malloc(length + 1));
  for (int i = 0; i < length; i++) iText[i] = buffer->GetChar(i);
  iText[length] = '\0';
  iLength = length;
}

Name_cl::~Name_cl() { free(iText); }

void Name_cl::SetText(const char* text, int length) {
  free(iText);
  iText = nullptr;
  iLength = 0;
  if (length < 1) return;
  iText = static_cast<char*>(malloc(length + 1));
  memcpy(iText, text, length);
  iText[length] = '\0';
  iLength = length;
}

bool Name_cl::IsEqual(const char* text) const {
  if (iText && text) return strcmp(iText, text) == 0;
  return iText == nullptr && text == nullptr;
}

int Name_cl::IndexOf(const char* what) const {
  if (!iText || !what) return -1;
  const char* hit = strstr(iText, what);
  return hit ? static_cast<int>(hit - iText) : -1;
}

int Name_cl::LastIndexOf(const char* what) const {
  if (!iText || !what) return -1;
  int last = -1;
  for (const char* hit = strstr(iText, what); hit; hit = strstr(hit + 1, what)) last = static_cast<int>(hit - iText);
  return last;
}

bool Name_cl::EndsWith(const Name_sptr& suffix) const {
  if (suffix.IsNull()) return false;
  int n = suffix->iLength;
  if (n == 0 || n > iLength) return false;
  return memcmp(iText + iLength - n, suffix->iText, n) == 0;
}

Name_sptr Name_cl::SubString(int from, int to) const {
  Name_cl* result = new Name_cl(static_cast<const char*>(nullptr));
  int length = to >= from ? to - from + 1 : 0;
  // An empty range still yields a non-null (empty) text, unlike Name_cl("").
  result->iText = static_cast<char*>(malloc(length + 1));
  if (length > 0) memcpy(result->iText, iText + from, length);
  result->iText[length] = '\0';
  result->iLength = length;
  return Name_sptr(result);
}

void Name_cl::Concat(const char* text) {
  if (!text) return;
  int add = static_cast<int>(strlen(text));
  char* joined = static_cast<char*>(malloc(iLength + add + 1));
  if (iLength) memcpy(joined, iText, iLength);
  memcpy(joined + iLength, text, add + 1);
  free(iText);
  iText = joined;
  iLength += add;
  if (iLength == 0) {
    free(iText);
    iText = nullptr;
  }
}

void Name_cl::Concat(char c) {
  char text[2] = {c, '\0'};
  Concat(text);
}

void Name_cl::Concat(int value) {
  char text[16];
  snprintf(text, sizeof text, "%d", value);
  Concat(text);
}

void Name_cl::Concat1(const char* text) {
  if (!text) return;
  int add = static_cast<int>(strlen(text));
  char* joined = static_cast<char*>(malloc(iLength + add + 1));
  memcpy(joined, text, add);
  if (iLength) memcpy(joined + add, iText, iLength);
  joined[add + iLength] = '\0';
  free(iText);
  iText = joined;
  iLength += add;
  if (iLength == 0) {
    free(iText);
    iText = nullptr;
  }
}

void Name_cl::Concat1(char c) {
  char text[2] = {c, '\0'};
  Concat1(text);
}

void Name_cl::Concat1(int value) {
  char text[16];
  snprintf(text, sizeof text, "%d", value);
  Concat1(text);
}

void Name_cl::RemoveChar(char c) {
  if (!iText) return;
  int kept = 0;
  for (int i = 0; i < iLength; i++)
    if (iText[i] != c) iText[kept++] = iText[i];
  iText[kept] = '\0';
  iLength = kept;
}

Name_sptr& Name_sptr::operator=(const Name_sptr& other) {
  if (other.iName) ++other.iName->iRefCount;
  Release();
  iName = other.iName;
  return *this;
}

Name_sptr& Name_sptr::operator=(Name_sptr&& other) noexcept {
  if (this != &other) {
    Release();
    iName = other.iName;
    other.iName = nullptr;
  }
  return *this;
}

Name_sptr& Name_sptr::operator=(Name_cl* name) {
  if (name) ++name->iRefCount;
  Release();
  iName = name;
  return *this;
}

void Name_sptr::Release() {
  if (iName && --iName->iRefCount == 0) delete iName;
  iName = nullptr;
}

bool operator==(const Name_sptr& a, const Name_sptr& b) {
  if (a.IsNull() || b.IsNull()) return a.IsNull() && b.IsNull();
  return a.Get() == b.Get() || a->IsEqual(*b);
}

std::ostream& operator<<(std::ostream& out, const Name_cl& name) {
  if (name.GetText()) out << name.GetText();
  return out;
}

std::ostream& operator<<(std::ostream& out, const Name_sptr& name) {
  if (!name.IsNull()) out << *name;
  return out;
}
