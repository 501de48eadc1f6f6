#include "disktools/Treemap.h"

#include <algorithm>
#include <limits>

namespace orwick::Treemap {

namespace {

constexpr double kEpsilon = 2.220446049250313e-16;

struct Row {
    std::vector<size_t> members;
    double sum = 0;
    double largest = 0;
    double smallest = std::numeric_limits<double>::infinity();

    void add(size_t index, double area)
    {
        members.push_back(index);
        sum += area;
        largest = std::max(largest, area);
        smallest = std::min(smallest, area);
    }
};

// Lays `row` out at the free rectangle's left edge (as a column) or top (as a band) and shrinks
// the free rectangle by it.
void place(const Row& row, const std::vector<double>& areas, QRectF& free, std::vector<QRectF>& out)
{
    if (free.width() >= free.height()) {
        // A free rectangle worn down to a line gives zero-size blocks, never NaN.
        const double width = row.sum / std::max(free.height(), kEpsilon);
        const double divisor = std::max(width, kEpsilon);
        double y = free.top();
        for (size_t i : row.members) {
            const double height = areas[i] / divisor;
            out[i] = QRectF(free.left(), y, width, height);
            y += height;
        }
        free = QRectF(free.left() + width, free.top(), std::max(0.0, free.width() - width), free.height());
    } else {
        const double height = row.sum / std::max(free.width(), kEpsilon);
        const double divisor = std::max(height, kEpsilon);
        double x = free.left();
        for (size_t i : row.members) {
            const double width = areas[i] / divisor;
            out[i] = QRectF(x, free.top(), width, height);
            x += width;
        }
        free = QRectF(free.left(), free.top() + height, free.width(), std::max(0.0, free.height() - height));
    }
}

} // namespace

double worstRatio(double sum, double largest, double smallest, double side)
{
    if (sum <= 0 || smallest <= 0)
        return std::numeric_limits<double>::infinity();
    const double s2 = side * side;
    return std::max(s2 * largest / (sum * sum), (sum * sum) / (s2 * smallest));
}

std::vector<QRectF> layout(const std::vector<double>& values, const QRectF& bounds)
{
    if (values.empty())
        return {};
    double total = 0;
    for (double v : values)
        total += v;
    std::vector<QRectF> out(values.size(), QRectF(bounds.topLeft(), QSizeF(0, 0)));
    if (total <= 0 || !(bounds.width() > 0 && bounds.height() > 0))
        return out;

    const double scale = bounds.width() * bounds.height() / total;
    std::vector<double> areas;
    areas.reserve(values.size());
    for (double v : values)
        areas.push_back(v * scale);

    QRectF free = bounds;
    Row row;
    for (size_t i = 0; i < areas.size(); ++i) {
        const double side = std::min(free.width(), free.height());
        if (!row.members.empty()) {
            const double without = worstRatio(row.sum, row.largest, row.smallest, side);
            const double with = worstRatio(row.sum + areas[i], std::max(row.largest, areas[i]),
                                            std::min(row.smallest, areas[i]), side);
            if (with > without) {
                place(row, areas, free, out);
                row = Row();
            }
        }
        row.add(i, areas[i]);
    }
    if (!row.members.empty())
        place(row, areas, free, out);
    return out;
}

} // namespace orwick::Treemap
