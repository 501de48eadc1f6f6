#pragma once
// TerminalCell: one character cell of a terminal screen as a plain value — its characters (a base
// character and up to two combining marks), its width, its colours and its attributes. A
// TerminalLine is a row of them. Colours stay as the program asked for them (the default, one of
// the 256 palette entries, or an exact RGB value); the view turns them into pixels with the
// theme's palette.

#include <array>
#include <cstdint>
#include <vector>

namespace orwick {

class TerminalColor {
public:
    enum class Kind : uint8_t { standard, indexed, rgb };

    constexpr TerminalColor() = default;
    static constexpr TerminalColor indexed(uint8_t index) { return TerminalColor(Kind::indexed, index); }
    static constexpr TerminalColor rgb(uint8_t r, uint8_t g, uint8_t b) { return TerminalColor(Kind::rgb, uint32_t(r) << 16 | uint32_t(g) << 8 | b); }

    Kind kind() const { return Kind(m_packed >> 24); }
    bool isDefault() const { return kind() == Kind::standard; }
    uint8_t index() const { return uint8_t(m_packed & 0xff); }
    // 0xRRGGBB of an rgb colour.
    uint32_t rgbValue() const { return m_packed & 0xffffff; }

    bool operator==(const TerminalColor&) const = default;

private:
    constexpr TerminalColor(Kind kind, uint32_t value) : m_packed(uint32_t(kind) << 24 | (value & 0xffffff)) {}
    uint32_t m_packed = 0; // the kind in the top byte, the index or 0xRRGGBB below it
};

namespace cellAttribute {
enum : uint8_t { bold = 1, italic = 2, underline = 4, reverse = 8, strike = 16, blink = 32, doubleUnderline = 64 };
}

struct TerminalCell {
    static constexpr int kMaxCharacters = 3;
    // The base character then combining marks; 0 ends the list early. An empty cell has none.
    std::array<char32_t, kMaxCharacters> characters{};
    // 1 for most characters, 2 for a wide one (CJK, most emoji), 0 for the second half of a wide one.
    uint8_t width = 1;
    uint8_t attributes = 0; // cellAttribute flags
    TerminalColor foreground;
    TerminalColor background;

    bool has(uint8_t attribute) const { return attributes & attribute; }
    bool isBlank() const { return characters[0] == 0 || characters[0] == U' '; }
    // Nothing to draw and nothing to keep: a blank in the default colours without attributes.
    bool isPlainBlank() const { return isBlank() && width == 1 && attributes == 0 && foreground.isDefault() && background.isDefault(); }
    bool operator==(const TerminalCell&) const = default;
};

using TerminalLine = std::vector<TerminalCell>;

} // namespace orwick
