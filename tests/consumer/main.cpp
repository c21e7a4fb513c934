// The same program in C++.
#include "main.c"
