#include "disktools/EditScript.h"

#include <algorithm>

namespace orwick::DiffText {

namespace {

// Myers' greedy forward search over a[0, n) and b[0, m), keeping each round's furthest points
// so the path can be traced back. Empty when more than `maxEdits` edits are needed.
std::vector<Edit> middleScript(const int* a, int n, const int* b, int m, int maxEdits, bool& tooFar)
{
    const int max = std::min(n + m, maxEdits);
    const int offset = max + 1;
    std::vector<int> v(size_t(2 * max + 3), 0);
    std::vector<std::vector<int>> trace;
    for (int d = 0; d <= max; ++d) {
        trace.push_back(v);
        for (int k = -d; k <= d; k += 2) {
            int x = (k == -d || (k != d && v[size_t(offset + k - 1)] < v[size_t(offset + k + 1)])) ? v[size_t(offset + k + 1)]
                                                                                                    : v[size_t(offset + k - 1)] + 1;
            int y = x - k;
            while (x < n && y < m && a[x] == b[y]) {
                ++x;
                ++y;
            }
            v[size_t(offset + k)] = x;
            if (x >= n && y >= m) {
                // Trace back from (n, m).
                std::vector<Edit> reversed;
                int cx = n, cy = m;
                for (int back = d; back > 0; --back) {
                    const std::vector<int>& pv = trace[size_t(back)];
                    const int ck = cx - cy;
                    const bool down = ck == -back || (ck != back && pv[size_t(offset + ck - 1)] < pv[size_t(offset + ck + 1)]);
                    const int pk = down ? ck + 1 : ck - 1;
                    const int px = pv[size_t(offset + pk)];
                    const int py = px - pk;
                    while (cx > (down ? px : px + 1) && cy > (down ? py + 1 : py)) {
                        reversed.push_back(Edit::keep);
                        --cx;
                        --cy;
                    }
                    reversed.push_back(down ? Edit::add : Edit::remove);
                    cx = px;
                    cy = py;
                }
                while (cx > 0 && cy > 0) {
                    reversed.push_back(Edit::keep);
                    --cx;
                    --cy;
                }
                std::reverse(reversed.begin(), reversed.end());
                return reversed;
            }
        }
    }
    tooFar = true;
    return {};
}

} // namespace

std::vector<Edit> editScript(const std::vector<int>& a, const std::vector<int>& b, int maxEdits)
{
    const int n = int(a.size());
    const int m = int(b.size());
    int start = 0;
    while (start < n && start < m && a[size_t(start)] == b[size_t(start)])
        ++start;
    int end = 0;
    while (end < n - start && end < m - start && a[size_t(n - 1 - end)] == b[size_t(m - 1 - end)])
        ++end;
    std::vector<Edit> script(size_t(start), Edit::keep);
    bool tooFar = false;
    std::vector<Edit> middle = middleScript(a.data() + start, n - start - end, b.data() + start, m - start - end, maxEdits, tooFar);
    if (tooFar) {
        middle.assign(size_t(n - start - end), Edit::remove);
        middle.insert(middle.end(), size_t(m - start - end), Edit::add);
    }
    script.insert(script.end(), middle.begin(), middle.end());
    script.insert(script.end(), size_t(end), Edit::keep);
    return script;
}

} // namespace orwick::DiffText
