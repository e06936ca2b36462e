#pragma once

#include "foundation/export.h"

#include <cstdio>

/// A block of elements together with the code of their type, from which `McRawData` knows the element width.
struct TARNEX_API McTypedPointer {
    enum Type { CHAR = 0, INT32 = 2, FLOAT32 = 3, FLOAT64 = 4 };

    void* pointer;
    int type;

    McTypedPointer(void* p, int typeCode) : pointer(p), type(typeCode) {}
    McTypedPointer(char* p) : McTypedPointer(p, CHAR) {}
    McTypedPointer(int* p) : McTypedPointer(p, INT32) {}
    McTypedPointer(float* p) : McTypedPointer(p, FLOAT32) {}
    McTypedPointer(double* p) : McTypedPointer(p, FLOAT64) {}

    /// Bytes of one element; 1 for an unknown code.
    unsigned elementWidth() const;
};

/// Big-endian binary input and output on a C stream.
class TARNEX_API McRawData {
public:
    /// Reads `n` elements in big-endian order into the machine's order; returns the number of whole elements read.
    static unsigned long readBigEndian(McTypedPointer p, unsigned long n, FILE* f);
    /// Writes `n` elements in big-endian order. The elements are not changed.
    static void writeBigEndian(McTypedPointer p, unsigned long n, FILE* f);
};
