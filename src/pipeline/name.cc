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
  char* text = Reserve(length);
  for (int i = 0; i < length; i++) text[i] = buffer->GetChar(i);
}

Name_cl::~Name_cl() { ClearText(); }

char* Name_cl::Reserve(int length) {
  iText = length < kInline ? iInline : static_cast<char*>(malloc(length + 1));
  iText[length] = '\0';
  iLength = length;
  return iText;
}

void Name_cl::ClearText() {
  iIndexHash = 0;
  if (iText != iInline) free(iText);
  iText = nullptr;
  iLength = 0;
}

void Name_cl::SetText(const char* text, int length) {
  ClearText();
  if (length < 1) return;
  memcpy(Reserve(length), text, length);
}

namespace {
uint64_t Load8(const char* p) {
  uint64_t w;
  memcpy(&w, p, 8);
  return w;
}
uint64_t Load4(const char* p) {
  uint32_t w;
  memcpy(&w, p, 4);
  return w;
}
// The high and low halves of the full product, folded.
uint64_t Mix(uint64_t a, uint64_t b) {
  unsigned __int128 r = static_cast<unsigned __int128>(a) * b;
  return static_cast<uint64_t>(r) ^ static_cast<uint64_t>(r >> 64);
}
}  // namespace

// Straight-line reads for names up to 16 characters, the usual case, so that a look-up spends
// its time waiting for memory rather than hashing.
uint32_t Name_cl::ComputeIndexHash(const char* text, int length) {
  const uint64_t k0 = 0xa0761d6478bd642fULL, k1 = 0xe7037ed1a0b428dbULL;
  uint64_t seed = k0 ^ static_cast<uint64_t>(length);
  uint64_t a = 0, b = 0;
  if (length > 16) {
    const char* p = text;
    for (int left = length; left > 16; left -= 16, p += 16) seed = Mix(Load8(p) ^ k1, Load8(p + 8) ^ seed);
    a = Load8(text + length - 16);
    b = Load8(text + length - 8);
  } else if (length >= 8) {
    a = Load8(text);
    b = Load8(text + length - 8);
  } else if (length >= 4) {
    a = Load4(text);
    b = Load4(text + length - 4);
  } else if (length > 0) {
    const unsigned char* u = reinterpret_cast<const unsigned char*>(text);
    a = static_cast<uint64_t>(u[0]) << 16 | static_cast<uint64_t>(u[length >> 1]) << 8 | u[length - 1];
  }
  uint64_t h = Mix(k1 ^ static_cast<uint64_t>(length), Mix(a ^ k1, b ^ seed));
  uint32_t folded = static_cast<uint32_t>(h ^ (h >> 32));
  return folded ? folded : 1;
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
  char* text = result->Reserve(length);
  if (length > 0) memcpy(text, iText + from, length);
  return Name_sptr(result);
}

// The text becomes head then tail, joined in a copy that SetText stores inline or on the heap.
void Name_cl::Join(const char* head, int headLength, const char* tail, int tailLength) {
  char* joined = static_cast<char*>(malloc(headLength + tailLength + 1));
  if (headLength) memcpy(joined, head, headLength);
  if (tailLength) memcpy(joined + headLength, tail, tailLength);
  SetText(joined, headLength + tailLength);
  free(joined);
}

void Name_cl::Concat(const char* text) {
  if (text) Join(iText, iLength, text, static_cast<int>(strlen(text)));
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
  if (text) Join(text, static_cast<int>(strlen(text)), iText, iLength);
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
  iIndexHash = 0;
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
