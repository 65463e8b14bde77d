#include "app/globals.h"

namespace korv {

std::string S1;
std::string S2;
std::string S3;
std::string S4;
std::string S5;
std::string S6;

Count nbrtransaction = 0;

double en1 = 0.0;

}  // namespace korv
