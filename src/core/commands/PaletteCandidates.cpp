#include "commands/PaletteCandidates.h"

#include <QKeySequence>
#include <bit>
#include <cmath>

namespace orwick {

int PreparedFolders::frecencyBonus(double frecency)
{
    return int(std::log2(frecency + 1.0)) * 150;
}

void PaletteCandidates::setCommands(QList<PaletteCommand> commands)
{
    m_commands = std::move(commands);
    m_commandTitles = {};
    m_commandTexts = {};
    m_commandReach.clear();
    m_commandKeywords = {};
    m_keywordBegins = {0};
    for (const PaletteCommand& command : std::as_const(m_commands)) {
        for (QStringView keyword : QStringView(command.keywords).split(u' ', Qt::SkipEmptyParts))
            m_commandKeywords.append(QLatin1Char(' ') + keyword.toString()); // a word inside a text, not its start
        m_keywordBegins.push_back(m_commandKeywords.size());
        const QKeySequence key = QKeySequence::fromString(command.shortcut, QKeySequence::NativeText);
        m_commandReach.push_back(key.isEmpty() ? kNoKey : std::popcount(uint(key[0].keyboardModifiers().toInt())));
        m_commandTitles.append(command.title);
        m_commandTexts.append(command.keywords.isEmpty() ? command.title
                                                         : command.title + QLatin1Char(' ') + command.keywords);
    }
}

void PreparedFolders::assign(std::span<const FrecentFolder> ranking, qsizetype limit)
{
    const size_t count = std::min(ranking.size(), size_t(limit));
    m_folders.clear();
    m_folders.reserve(count);
    m_texts = {};
    for (const FrecentFolder& folder : ranking.first(count)) {
        m_folders.push_back({folder.path, folder.score, frecencyBonus(folder.score)});
        m_texts.append(folder.path.abbreviated());
    }
}

void PaletteCandidates::setFolders(std::span<const FrecentFolder> ranking)
{
    m_folders.assign(ranking, kMaxFolders);
}

void PaletteCandidates::setFiles(std::span<const FilePath> files)
{
    const size_t count = std::min(files.size(), size_t(kMaxFiles));
    m_files.assign(files.begin(), files.begin() + qsizetype(count));
    m_fileSet = QSet<FilePath>(m_files.begin(), m_files.end());
    m_fileNames = {};
    for (const FilePath& file : m_files)
        m_fileNames.append(visibleName(file.fileNameBytes())); // matched as it is shown
}

} // namespace orwick
