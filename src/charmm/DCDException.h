#pragma once

#include "foundation/McString.h"

/// What is wrong with a PSF or DCD file. Thrown by value, caught as `DCDException const&`.
class TARNEX_API DCDException {
public:
    explicit DCDException(char const* text) : message(text) {}

    McString message;
};

/// A section of a PSF file is missing or stands in the wrong place.
class TARNEX_API TokenExpected : public DCDException {
public:
    explicit TokenExpected(char const* token) : DCDException("") {
        message.printf("Expected token %s not found in psf-file", token);
    }
};

/// The DCD file, or one of its frames, does not fit the atoms of the PSF file.
class TARNEX_API WrongNumberOfAtoms : public DCDException {
public:
    WrongNumberOfAtoms(int found, int expected) : DCDException("") {
        message.printf("Found number of atoms ( : %d) is inconsistent with expected number ( : %d)", found, expected);
    }
};

/// The first record length of a DCD file has its value in neither byte order.
class TARNEX_API UnknownEndian : public DCDException {
public:
    UnknownEndian() : DCDException("Cannot determine endian type") {}
};

/// A DCD file whose integers and record lengths take 8 bytes.
class TARNEX_API Unability64 : public DCDException {
public:
    Unability64() : DCDException("Can't handle 64 bit data !") {}
};
