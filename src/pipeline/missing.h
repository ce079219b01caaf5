// The marks of missing values, shared by every matrix, table, statistic and score of the program.
#ifndef VORN_PIPELINE_MISSING_H
#define VORN_PIPELINE_MISSING_H

// A missing real: the lowest double, which is also the log of zero and "no value" in scores.
inline constexpr double kMissingReal = -1.7976931348623157e308;
// A missing integer.
inline constexpr int kMissingInt = -2147483647;

#endif
