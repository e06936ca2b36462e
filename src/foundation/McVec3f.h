#pragma once

/// Three floats without padding, so that an array of them is also a flat float array. A default one is left unset.
struct McVec3f {
    float x, y, z;

    McVec3f() = default;
    constexpr McVec3f(float x_, float y_, float z_) : x(x_), y(y_), z(z_) {}

    float& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
    float const& operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }
    bool operator==(McVec3f const&) const = default;
};

static_assert(sizeof(McVec3f) == 3 * sizeof(float));
