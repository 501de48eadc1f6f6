#pragma once
// Treemap: the squarified layout. Pure: values and a rectangle in, one rectangle per value out,
// in the order of the values. Callers pass values largest first, which is what keeps the
// blocks close to square.

#include <QRectF>
#include <vector>

namespace orwick::Treemap {

std::vector<QRectF> layout(const std::vector<double>& values, const QRectF& bounds);

// The worst aspect ratio of a row with area sum `sum`, largest `largest` and smallest `smallest`
// laid along a side of length `side`; infinite when the sum or the smallest is not above 0.
double worstRatio(double sum, double largest, double smallest, double side);

} // namespace orwick::Treemap
