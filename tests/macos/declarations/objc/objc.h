#pragma once

// The language's own names. On Apple processors BOOL is the C++ bool.

typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no

#ifndef nil
#define nil nullptr
#endif
