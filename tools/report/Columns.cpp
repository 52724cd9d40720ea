#include "tools/report/Columns.h"

#include <stddef.h>

#include <limits>

MinMaxColumns::MinMaxColumns(int columns, int64_t span)
    : mSpan(span > 0 ? span : 1),
      mMin(static_cast<size_t>(columns > 0 ? columns : 1), std::numeric_limits<float>::max()),
      mMax(static_cast<size_t>(columns > 0 ? columns : 1), std::numeric_limits<float>::lowest()) {}

int MinMaxColumns::ColumnOf(int64_t position) const {
    if (position <= 0) {
        return 0;
    }
    const int64_t c = position * Columns() / mSpan;
    return c >= Columns() ? Columns() - 1 : static_cast<int>(c);
}

void MinMaxColumns::Add(int64_t position, float value) {
    Put(ColumnOf(position), value, value);
}

void MinMaxColumns::AddSamples(int64_t first, const float* values, int count, int stride) {
    int i = 0;
    while (i < count) {
        const int column = ColumnOf(first + i);
        // Positions up to the next column's first one share this column.
        const int64_t nextStart =
                column + 1 >= Columns()
                        ? first + count
                        : ((static_cast<int64_t>(column) + 1) * mSpan + Columns() - 1) / Columns();
        const int end = static_cast<int>(nextStart - first < count ? nextStart - first : count);
        float lo = values[static_cast<size_t>(i) * stride];
        float hi = lo;
        for (int k = i + 1; k < end; ++k) {
            const float v = values[static_cast<size_t>(k) * stride];
            lo = v < lo ? v : lo;
            hi = v > hi ? v : hi;
        }
        Put(column, lo, hi);
        i = end > i ? end : i + 1;
    }
}

void MinMaxColumns::AddSpan(int64_t first, int64_t last, float value) {
    const int from = ColumnOf(first);
    const int to = last > first ? ColumnOf(last - 1) : from;
    for (int c = from; c <= to; ++c) {
        Put(c, value, value);
    }
}

bool MinMaxColumns::Empty() const {
    for (int c = 0; c < Columns(); ++c) {
        if (Has(c)) {
            return false;
        }
    }
    return true;
}
