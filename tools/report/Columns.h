// Decimation of a long series to a plot's pixel columns. Every column keeps the smallest and the
// largest value that fell into it, so a one-sample click stays visible however long the file,
// and the plot costs the same for three seconds as for an hour.
#pragma once

#include <stdint.h>

#include <vector>

class MinMaxColumns {
public:
    MinMaxColumns() = default;
    // Positions 0 .. span - 1 are spread evenly over `columns` columns; later positions fall
    // into the last column.
    MinMaxColumns(int columns, int64_t span);

    int Columns() const { return static_cast<int>(mMin.size()); }
    int64_t Span() const { return mSpan; }
    int ColumnOf(int64_t position) const;

    void Add(int64_t position, float value);
    // Samples at position first, first + 1, ...; `stride` apart in `values`.
    void AddSamples(int64_t first, const float* values, int count, int stride);
    // One value that holds for the positions first .. last - 1 (at least one column).
    void AddSpan(int64_t first, int64_t last, float value);

    bool Has(int column) const { return mMin[column] <= mMax[column]; }
    float Min(int column) const { return mMin[column]; }
    float Max(int column) const { return mMax[column]; }
    bool Empty() const;

private:
    void Put(int column, float lo, float hi) {
        mMin[column] = lo < mMin[column] ? lo : mMin[column];
        mMax[column] = hi > mMax[column] ? hi : mMax[column];
    }
    int64_t mSpan = 1;
    std::vector<float> mMin;
    std::vector<float> mMax;
};
