#pragma once
// The shortest edit script between two sequences of numbers (Myers 1986), the matching under
// both the line diff and the changed-word marks. The common start and end are set aside first;
// when the middle needs more than `maxEdits` edits it is given as removed, then added, whole.

#include <vector>

namespace orwick::DiffText {

enum class Edit : unsigned char { keep, remove, add };

// One step per element: `keep` advances both sequences, `remove` the first, `add` the second.
std::vector<Edit> editScript(const std::vector<int>& a, const std::vector<int>& b, int maxEdits);

} // namespace orwick::DiffText
