// Reading enumerated keys: a text is turned into the index of its entry in a table of names.
#ifndef VORN_PIPELINE_ENUM_CONVERTER_H
#define VORN_PIPELINE_ENUM_CONVERTER_H

#include <strings.h>

#include <cstdlib>
#include <cstring>
#include <iostream>

#include "pipeline/name.h"

template <class E, int N>
class EnumConverter_tmpl {
 public:
  // The last entry equal to the value wins; a null value converts the default text, and with no
  // default the read is fatal. A default that matches no entry exactly matches ignoring case.
  static E FromString(const char** table, Name_sptr value, const char* defaultText) {
    const char* text = value.IsNull() ? defaultText : value->GetText();
    if (!text) {
      std::cerr << "EnumConverter_tmpl::FromString Unrecognized type <NULL>" << std::endl;
      abort();
    }
    int found = -1;
    for (int i = 0; i < N; i++)
      if (strcmp(table[i], text) == 0) found = i;
    if (found < 0 && value.IsNull())
      for (int i = 0; i < N; i++)
        if (strcasecmp(table[i], text) == 0) found = i;
    if (found < 0) {
      std::cerr << "EnumConverter_tmpl::FromString Unrecognized type " << text << std::endl;
      abort();
    }
    return static_cast<E>(found);
  }
};

#endif
