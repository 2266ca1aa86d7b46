// Character and formatting primitives that every text of the framework goes through.
//
// clt_UpperCase and clt_FormatV are what the framework calls: on Windows they are the
// system's CharUpperA and wvsprintfA, elsewhere the portable forms below, which behave
// like the system's for the Western (1252) ANSI code page and are checked against the
// system functions byte for byte.
#pragma once

#include <cstdarg>
#include <cstddef>

// The formatting limit of wvsprintfA: 1023 characters and the terminator.
constexpr size_t CLT_FORMAT_BUFFER = 1024;

// Upper-cases a zero-terminated text in place.
void clt_UpperCase(char* text);
// Formats into a buffer of CLT_FORMAT_BUFFER bytes; returns the characters written.
int clt_FormatV(char* buffer, const char* format, va_list args);

// Portable forms.
void clt_PortableUpperCase(char* text);
unsigned char clt_PortableUpperChar(unsigned char c);
int clt_PortableFormatV(char* buffer, const char* format, va_list args);
