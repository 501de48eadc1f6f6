#include "files/KeySort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

using namespace orwick;

namespace {

// Keys drawn from a few prefixes, digits, empty keys, keys that begin others, repeats, and
// units above 0x7fff; sorted against a plain stable sort of the same keys.
TEST(KeySort, OrdersLikeAStableSortOfTheUnits)
{
    std::mt19937 random(3);
    const std::u16string prefixes[] = {u"", u"img_", u"img_2024", u"report", u"r", u"\xffff", u"\x8000a"};
    for (const size_t count : {0u, 1u, 2u, 11u, 12u, 13u, 200u, 5000u}) {
        std::vector<std::u16string> texts;
        for (size_t i = 0; i < count; ++i) {
            std::u16string text = prefixes[random() % 7];
            const int tail = int(random() % 4);
            for (int k = 0; k < tail; ++k)
                text.push_back(char16_t(u'0' + random() % 3));
            texts.push_back(text);
        }
        std::vector<SortKeyRef> keys;
        for (size_t i = 0; i < texts.size(); ++i)
            keys.push_back({texts[i], int(i)});
        std::vector<SortKeyRef> expected = keys;
        std::stable_sort(expected.begin(), expected.end(), [](const SortKeyRef& a, const SortKeyRef& b) { return a.units < b.units; });
        sortKeys(keys);
        ASSERT_EQ(keys.size(), expected.size());
        for (size_t i = 0; i < keys.size(); ++i)
            ASSERT_EQ(keys[i].index, expected[i].index) << "count " << count << ", position " << i;
    }
}

} // namespace
