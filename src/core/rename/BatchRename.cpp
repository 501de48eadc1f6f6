#include "rename/BatchRename.h"

#include "base/PathParts.h"
#include "rename/NameText.h"

#include <utility>

namespace orwick {

namespace {

QString titleCased(const QString& text)
{
    QString result = text.toLower();
    bool wordStart = true;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const QChar c = result[i];
        if (c.isLetterOrNumber()) {
            if (wordStart)
                result[i] = c.toTitleCase();
            wordStart = false;
        } else {
            wordStart = c != u'\''; // "don't" stays one word
        }
    }
    return result;
}

QString withoutCharacters(const QString& text, const QString& characters)
{
    if (characters.isEmpty())
        return text;
    QString result;
    result.reserve(text.size());
    for (const QChar c : text)
        if (!characters.contains(c))
            result.append(c);
    return result;
}

} // namespace

QString BatchRename::modeText(Mode mode)
{
    switch (mode) {
    case Mode::replace: return QStringLiteral("Replace");
    case Mode::add: return QStringLiteral("Add Text");
    case Mode::number: return QStringLiteral("Number");
    case Mode::changeCase: return QStringLiteral("Change Case");
    case Mode::fromTemplate: return QStringLiteral("Template");
    case Mode::remove: return QStringLiteral("Remove Characters");
    }
    return {};
}

QString BatchRename::letterCaseText(LetterCase letterCase)
{
    switch (letterCase) {
    case LetterCase::lower: return QStringLiteral("lowercase");
    case LetterCase::upper: return QStringLiteral("UPPERCASE");
    case LetterCase::title: return QStringLiteral("Title Case");
    }
    return {};
}

const std::vector<BatchRename::Mode>& BatchRename::modes()
{
    static const std::vector<Mode> all{Mode::replace, Mode::add, Mode::number, Mode::changeCase, Mode::fromTemplate,
                                       Mode::remove};
    return all;
}

QByteArrayView extensionOf(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot == name.size() - 1)
        return {};
    return name.sliced(dot + 1);
}

QByteArrayView baseOf(QByteArrayView name)
{
    const QByteArrayView extension = extensionOf(name);
    return extension.isEmpty() ? name : name.first(name.size() - extension.size() - 1);
}

BatchRenamer::BatchRenamer(const BatchRename& rule) : m_rule(rule)
{
    if (m_rule.mode == BatchRename::Mode::replace && m_rule.usesRegex && !m_rule.find.isEmpty()) {
        QRegularExpression::PatternOptions options = QRegularExpression::UseUnicodePropertiesOption;
        if (m_rule.ignoresCase)
            options |= QRegularExpression::CaseInsensitiveOption;
        m_expression = QRegularExpression(m_rule.find, options);
        if (!m_expression.isValid())
            m_problem = QStringLiteral("That isn't a valid regular expression");
        else {
            m_expression.optimize();
            readReplacement();
        }
    }
    if (m_rule.mode == BatchRename::Mode::fromTemplate)
        readTemplate();
}

void BatchRenamer::readReplacement()
{
    const QString& replacement = m_rule.replacement;
    const int groups = m_expression.captureCount();
    QString literal;
    for (qsizetype i = 0; i < replacement.size(); ++i) {
        const QChar c = replacement[i];
        if (c == u'\\' && i + 1 < replacement.size()) {
            literal.append(replacement[++i]);
            continue;
        }
        if (c != u'$' || i + 1 >= replacement.size() || !replacement[i + 1].isDigit()) {
            literal.append(c);
            continue;
        }
        // As many digits as still name a group: "$12" is group 12 only when there are 12.
        int group = replacement[i + 1].digitValue();
        qsizetype end = i + 2;
        while (end < replacement.size() && replacement[end].isDigit()) {
            const int longer = group * 10 + replacement[end].digitValue();
            if (longer > groups)
                break;
            group = longer;
            ++end;
        }
        if (!literal.isEmpty())
            m_replacement.push_back({std::exchange(literal, {}), -1});
        m_replacement.push_back({{}, group});
        i = end - 1;
    }
    if (!literal.isEmpty())
        m_replacement.push_back({literal, -1});
}

void BatchRenamer::appendReplacement(QString& result, const QRegularExpressionMatch& match) const
{
    const int captured = match.lastCapturedIndex();
    for (const ReplacementPiece& piece : m_replacement) {
        if (piece.group < 0)
            result += piece.literal;
        else if (piece.group <= captured)
            result += match.capturedView(piece.group);
    }
}

void BatchRenamer::readTemplate()
{
    const QString& text = m_rule.templateText;
    QString literal;
    const auto flush = [&] {
        if (!literal.isEmpty())
            m_fields.push_back({Field::Kind::literal, literal});
        literal.clear();
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if ((c == u'{' || c == u'}') && i + 1 < text.size() && text[i + 1] == c) {
            literal.append(c);
            ++i;
            continue;
        }
        if (c == u'}') {
            m_problem = QStringLiteral("A “}” has no “{” before it; write “}}” for the brace itself");
            return;
        }
        if (c != u'{') {
            literal.append(c);
            continue;
        }
        const qsizetype close = text.indexOf(u'}', i + 1);
        if (close < 0) {
            m_problem = QStringLiteral("A “{” has no closing “}”; write “{{” for the brace itself");
            return;
        }
        const QString field = text.sliced(i + 1, close - i - 1);
        flush();
        if (field == u"name")
            m_fields.push_back({Field::Kind::name, {}});
        else if (field == u"ext")
            m_fields.push_back({Field::Kind::extension, {}});
        else if (field == u"n")
            m_fields.push_back({Field::Kind::number, {}});
        else if (field == u"parent")
            m_fields.push_back({Field::Kind::parent, {}});
        else if (field == u"date" || field.startsWith(u"date:")) {
            const QString format = field.size() > 5 ? field.sliced(5) : QStringLiteral("yyyy-MM-dd");
            m_fields.push_back({Field::Kind::date, format});
            m_needsDates = true;
        } else {
            m_problem = QStringLiteral("There is no field “{%1}”: use {name}, {ext}, {n}, {date:yyyy-MM-dd} or {parent}").arg(field);
            return;
        }
        i = close;
    }
    flush();
}

QString BatchRenamer::paddedNumber(qint64 number, qint64 startAt, qint64 count)
{
    const qint64 largest = std::max(startAt + count - 1, number);
    const int width = std::max<int>(2, QString::number(largest).size());
    return number < 0 ? QString::number(number) : QString::number(number).rightJustified(width, u'0');
}

QString BatchRenamer::replaced(const QString& name) const
{
    if (m_rule.find.isEmpty())
        return name;
    if (!m_rule.usesRegex) {
        QString result = name;
        return result.replace(m_rule.find, m_rule.replacement, m_rule.ignoresCase ? Qt::CaseInsensitive : Qt::CaseSensitive);
    }
    // Match after match from where the last one ended: the matches globalMatch finds while none
    // is empty, without the iterator's objects for each name. Stepping past an empty match takes
    // globalMatch's own rule, so a name with one goes through it.
    QRegularExpressionMatch match = m_expression.match(name);
    if (!match.hasMatch())
        return name;
    QString result;
    result.reserve(name.size() + 16);
    qsizetype last = 0;
    for (; match.hasMatch(); match = m_expression.match(name, last)) {
        if (match.capturedLength() == 0)
            return replacedStepByStep(name);
        result += QStringView(name).sliced(last, match.capturedStart() - last);
        appendReplacement(result, match);
        last = match.capturedEnd();
    }
    result += QStringView(name).sliced(last);
    return result;
}

QString BatchRenamer::replacedStepByStep(const QString& name) const
{
    QString result;
    qsizetype last = 0;
    for (const QRegularExpressionMatch& match : m_expression.globalMatch(name)) {
        result += QStringView(name).sliced(last, match.capturedStart() - last);
        appendReplacement(result, match);
        last = match.capturedEnd();
    }
    result += QStringView(name).sliced(last);
    return result;
}

QString BatchRenamer::transformBase(const QString& base, const FilePath& item, int index, int count,
                                    const QDateTime& modified) const
{
    switch (m_rule.mode) {
    case BatchRename::Mode::replace:
        return base; // works on the whole name, see newName()
    case BatchRename::Mode::add:
        return m_rule.addsAtEnd ? base + m_rule.text : m_rule.text + base;
    case BatchRename::Mode::number: {
        const QString stem = m_rule.baseName.trimmed();
        return (stem.isEmpty() ? base : stem) + u' ' + paddedNumber(m_rule.startAt + qint64(index), m_rule.startAt, count);
    }
    case BatchRename::Mode::changeCase:
        switch (m_rule.letterCase) {
        case BatchRename::LetterCase::lower: return base.toLower();
        case BatchRename::LetterCase::upper: return base.toUpper();
        case BatchRename::LetterCase::title: return titleCased(base);
        }
        return base;
    case BatchRename::Mode::fromTemplate: {
        QString result;
        for (const Field& field : m_fields) {
            switch (field.kind) {
            case Field::Kind::literal: result += field.text; break;
            case Field::Kind::name: result += base; break;
            case Field::Kind::extension: result += NameText::fromBytes(extensionOf(item.fileNameBytes())).text; break;
            case Field::Kind::number: result += paddedNumber(m_rule.startAt + qint64(index), m_rule.startAt, count); break;
            case Field::Kind::date: result += modified.toString(field.text); break;
            case Field::Kind::parent: result += NameText::fromBytes(item.parent().fileNameBytes()).text; break;
            }
        }
        return result;
    }
    case BatchRename::Mode::remove:
        return withoutCharacters(base, m_rule.characters);
    }
    return base;
}

std::optional<QByteArray> BatchRenamer::newName(const FilePath& item, int index, int count, const QDateTime& modified) const
{
    if (!m_problem.isEmpty())
        return std::nullopt;
    const QByteArrayView name = item.isRoot() ? QByteArrayView(item.native()) : nameOf(item);
    if (m_rule.mode == BatchRename::Mode::replace) {
        const NameText whole = NameText::fromBytes(name);
        return NameText::toBytes(replaced(whole.text), whole.escaped);
    }
    const QByteArrayView extension = extensionOf(name);
    const NameText base = NameText::fromBytes(baseOf(name));
    // The template may bring in the extension's or the folder's bytes too.
    const bool escaped = base.escaped || (m_rule.mode == BatchRename::Mode::fromTemplate && !isValidUtf8(item.native()));
    QByteArray result = NameText::toBytes(transformBase(base.text, item, index, count, modified), escaped);
    if (!extension.isEmpty()) {
        result += '.';
        result += extension;
    }
    return result;
}

} // namespace orwick
