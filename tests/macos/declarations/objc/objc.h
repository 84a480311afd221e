#pragma once

// Names that the language itself defines. On Apple silicon BOOL is the C++ bool.

typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no

#ifndef nil
#define nil nullptr
#endif
#ifndef Nil
#define Nil nullptr
#endif
