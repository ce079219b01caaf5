// Temporary files, joins of containers into text and parsers of delimited text into containers.
#ifndef VORN_PIPELINE_UTILS_H
#define VORN_PIPELINE_UTILS_H

#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"

class Utils_cl {
 public:
  // "tmp.<milliseconds>" in the working directory, distinct within the process.
  static Name_sptr CreateTempFileName();
  static void DeleteFile(Name_sptr file);
  // Copies the plain text lines directly inside the section of file marked by lines holding tag
  // into a new temporary file and returns its name.
  static Name_sptr CreateTempFileForXMLSection(Name_sptr file, const char* tag);

  // Joins with the separator between elements; the hash forms write key and value of each entry
  // in the set's visiting order.
  static Name_sptr CharVecToString(const Vector_tmpl<char>& vec, const char* separator);
  static Name_sptr NameVecToString(const Vector_tmpl<Name_sptr>& vec, const char* separator);
  static Name_sptr Int2NameToString(const IntSet_tmpl<Name_sptr>& set, const char* separator);
  static Name_sptr VectorIntHash2NameToString(const VectorIntHash_tmpl<Name_sptr>& hash, const char* separator);
  static Name_sptr VectorNameHash2IntToString(const VectorNameHash_tmpl<int>& hash, const char* separator);

  // Split the text in place (it is destroyed) at any of the delimiters. The new vectors have
  // capacity 10 and the default -1 (null for names); a null text gives an empty vector.
  static Vector_tmpl<double>* StrToDoubleVec(char* text, const char* delimiters);
  static Vector_tmpl<int>* StrToIntVec(char* text, const char* delimiters);
  static Vector_tmpl<char>* StrToIntCharVec(char* text, const char* delimiters);
  static Vector_tmpl<Name_sptr>* StrToNameVec(char* text, const char* delimiters);
  // Tokens alternate name and integer (or integer and name); a last unpaired token is dropped.
  static VectorNameHash_tmpl<int>* StringToVectorNameHash2Int(char* text, const char* delimiters);
  static IntSet_tmpl<Name_sptr>* StringToInt2Name(char* text, const char* delimiters);
  static VectorIntHash_tmpl<Name_sptr>* StringToVectorIntHash2Name(char* text, const char* delimiters);

  static void Sort(Vector_tmpl<double>* vec);
  static void Sort(Vector_tmpl<int>* vec);
};

#endif
