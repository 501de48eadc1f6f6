#include "disktools/Treemap.h"

#include <gtest/gtest.h>
#include <random>

using namespace orwick;

namespace {

void expectRect(const QRectF& actual, double x, double y, double w, double h)
{
    EXPECT_NEAR(actual.x(), x, 1e-3);
    EXPECT_NEAR(actual.y(), y, 1e-3);
    EXPECT_NEAR(actual.width(), w, 1e-3);
    EXPECT_NEAR(actual.height(), h, 1e-3);
}

double aspect(const QRectF& r) { return std::max(r.width() / r.height(), r.height() / r.width()); }

} // namespace

TEST(Treemap, LaysOutTheStandardExampleRowByRow)
{
    const auto rects = Treemap::layout({6, 6, 4, 3, 2, 2, 1}, QRectF(0, 0, 6, 4));
    ASSERT_EQ(rects.size(), 7u);
    expectRect(rects[0], 0, 0, 3, 2);             // the first two form a column of width 3
    expectRect(rects[1], 0, 2, 3, 2);
    expectRect(rects[2], 3, 0, 12.0 / 7, 7.0 / 3); // then a band along the top of what is left
    expectRect(rects[3], 3 + 12.0 / 7, 0, 9.0 / 7, 7.0 / 3);
    expectRect(rects[4], 3, 7.0 / 3, 1.2, 5.0 / 3);
    expectRect(rects[5], 4.2, 7.0 / 3, 1.2, 5.0 / 3);
    expectRect(rects[6], 5.4, 7.0 / 3, 0.6, 5.0 / 3);
}

TEST(Treemap, AreasAreProportionalAndBlocksTileTheBounds)
{
    std::mt19937 random(42);
    for (int round = 0; round < 50; ++round) {
        std::vector<double> values(1 + random() % 40);
        for (double& v : values)
            v = double(1 + random() % 100000);
        std::sort(values.rbegin(), values.rend());
        const QRectF bounds(10, 20, 300 + random() % 900, 200 + random() % 700);
        const auto rects = Treemap::layout(values, bounds);
        ASSERT_EQ(rects.size(), values.size());
        double total = 0, covered = 0;
        for (double v : values)
            total += v;
        for (size_t i = 0; i < rects.size(); ++i) {
            const QRectF& r = rects[i];
            const double area = r.width() * r.height();
            covered += area;
            EXPECT_NEAR(area, values[i] / total * bounds.width() * bounds.height(), 1e-6 * bounds.width() * bounds.height());
            EXPECT_GE(r.left(), bounds.left() - 1e-6);
            EXPECT_GE(r.top(), bounds.top() - 1e-6);
            EXPECT_LE(r.right(), bounds.right() + 1e-6);
            EXPECT_LE(r.bottom(), bounds.bottom() + 1e-6);
            for (size_t j = 0; j < i; ++j) {
                const QRectF overlap = r.intersected(rects[j]);
                EXPECT_LT(overlap.width() * overlap.height(), 1e-6) << "blocks " << i << " and " << j << " overlap";
            }
        }
        EXPECT_NEAR(covered, bounds.width() * bounds.height(), 1e-6 * covered);
    }
}

TEST(Treemap, SquarifiedBlocksStayCloserToSquareThanSlices)
{
    // Equal values in a square: the squarified rule makes a grid of near-squares, where slicing
    // into strips would give blocks 16 times taller than wide.
    const auto rects = Treemap::layout(std::vector<double>(16, 1.0), QRectF(0, 0, 100, 100));
    for (const QRectF& r : rects)
        EXPECT_LT(aspect(r), 2.0);
}

TEST(Treemap, DegenerateInputsGiveEmptyBlocks)
{
    EXPECT_TRUE(Treemap::layout({}, QRectF(0, 0, 10, 10)).empty());
    for (const auto& rects : {Treemap::layout({0, 0}, QRectF(0, 0, 10, 10)), Treemap::layout({1, 2}, QRectF(0, 0, 0, 10))}) {
        ASSERT_EQ(rects.size(), 2u);
        for (const QRectF& r : rects)
            EXPECT_EQ(r.width() * r.height(), 0);
    }
    // A zero among positive values gets no area and does not disturb the others.
    const auto rects = Treemap::layout({3, 1, 0}, QRectF(0, 0, 4, 1));
    EXPECT_NEAR(rects[0].width() * rects[0].height(), 3, 1e-9);
    EXPECT_NEAR(rects[2].width() * rects[2].height(), 0, 1e-9);
}

TEST(Treemap, WorstRatioIsInfiniteForEmptyRows)
{
    EXPECT_TRUE(std::isinf(Treemap::worstRatio(0, 0, 0, 4)));
    EXPECT_TRUE(std::isinf(Treemap::worstRatio(5, 5, 0, 4)));
    EXPECT_DOUBLE_EQ(Treemap::worstRatio(4, 4, 4, 2), 1.0); // a 2 × 2 square
}
