#pragma once
// BatchRename: the rule of a batch rename, and the new name it gives each item.
//
// The rule is a plain value the panel edits field by field. BatchRenamer is the rule made ready
// to apply (the pattern compiled, the template read) so that thousands of names cost one
// compile; it is immutable and may be shared with a background thread.
//
// Every mode but replace works on the base (the name without its extension) and puts the
// extension back; replace works on the whole name. A name's bytes that are not UTF-8 are kept
// as they are wherever the rule leaves them (see NameText).

#include "base/FilePath.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QString>
#include <optional>
#include <vector>

namespace orwick {

struct BatchRename {
    enum class Mode { replace, add, number, changeCase, fromTemplate, remove };
    enum class LetterCase { lower, upper, title };

    Mode mode = Mode::replace;
    // replace
    QString find;
    QString replacement;
    bool ignoresCase = false;
    bool usesRegex = false;
    // add
    QString text;
    bool addsAtEnd = false;
    // number (startAt also numbers the template's {n})
    QString baseName;
    int startAt = 1;
    // change case
    LetterCase letterCase = LetterCase::lower;
    // template: "{name}", "{ext}", "{n}", "{date:yyyy-MM-dd}", "{parent}"; "{{" and "}}" are braces
    QString templateText = QStringLiteral("{name}");
    // remove: every one of these characters goes from the base
    QString characters;

    bool operator==(const BatchRename&) const = default;

    // "Replace", "Add Text", "Number", "Change Case", "Template", "Remove Characters".
    static QString modeText(Mode mode);
    static QString letterCaseText(LetterCase letterCase); // "lowercase", "UPPERCASE", "Title Case"
    static const std::vector<Mode>& modes();
};

// The part of a name after its last "." ("" for none; a leading dot starts no extension).
QByteArrayView extensionOf(QByteArrayView name);
// The name without "." and extension; the whole name when there is no extension.
QByteArrayView baseOf(QByteArrayView name);

class BatchRenamer {
public:
    explicit BatchRenamer(const BatchRename& rule);

    const BatchRename& rule() const { return m_rule; }
    // Why the rule gives no names ("That isn't a valid regular expression"), else empty.
    const QString& problem() const { return m_problem; }
    // Whether newName() reads the items' modification dates (the template's {date}).
    bool needsDates() const { return m_needsDates; }

    // The new name of `item`, the `index`-th (from 0) of `count` items in list order; nothing
    // when the rule has a problem. `modified` is read only when needsDates().
    std::optional<QByteArray> newName(const FilePath& item, int index, int count, const QDateTime& modified = {}) const;

    // "7", "07", "007": `number` padded to the width of the largest number of the batch
    // (startAt + count − 1), never narrower than 2.
    static QString paddedNumber(qint64 number, qint64 startAt, qint64 count);

private:
    struct Field {
        enum class Kind { literal, name, extension, number, date, parent } kind = Kind::literal;
        QString text; // the literal, or the date's format
    };
    // One piece of the replacement of a pattern match: text as it is, or a captured group.
    struct ReplacementPiece {
        QString literal;
        int group = -1; // >= 0: the group's text instead of `literal`
    };
    QString transformBase(const QString& base, const FilePath& item, int index, int count, const QDateTime& modified) const;
    QString replaced(const QString& name) const;
    QString replacedStepByStep(const QString& name) const;
    void appendReplacement(QString& result, const QRegularExpressionMatch& match) const;
    void readTemplate();
    void readReplacement();

    BatchRename m_rule;
    QRegularExpression m_expression;
    // The replacement template, read once: "$1", "$2"… stand for the captured groups (as many
    // digits as name a group of the pattern), "\" takes the next character as it is ("\$").
    std::vector<ReplacementPiece> m_replacement;
    std::vector<Field> m_fields;
    QString m_problem;
    bool m_needsDates = false;
};

} // namespace orwick
