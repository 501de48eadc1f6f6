// Exporting a note: a standalone HTML page with its heading, coloured code, table and front
// matter, a relative picture embedded as a data: address and a missing one as a visible
// placeholder that is counted; a PDF of one page or more that Qt's PDF reader opens; the file
// made beside the note by the engine under a free name, undone to the Trash; a note that isn't
// UTF-8 refused in words.

#include "commands/ExportNoteActions.h"
#include "fileops/FileOperations.h"
#include "notes/NoteExport.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QImage>
#include <QPdfDocument>
#include <QPdfSelection>
#include <QUndoStack>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

QByteArray png(QColor colour)
{
    QImage image(8, 6, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

class NoteExportTest : public testing::Test {
protected:
    NoteExportTest()
    {
        tree.file("notes/pics/dot.png", png(Qt::red));
        note = tree.file("notes/Plan.md", "---\nstatus: doing\ntags: [a, b]\n---\n"
                                          "# The Plan\n\n"
                                          "```cpp\nint main() { return 0; }\n```\n\n"
                                          "| Step | Who |\n|---|---|\n| one | me |\n\n"
                                          "- [ ] write it\n\n"
                                          "![a dot](pics/dot.png) and ![gone](pics/gone.png)\n"
                                          "![remote](https://example.com/x.png)\n");
    }
    test::TempTree tree;
    FilePath note;
};

TEST_F(NoteExportTest, HtmlEmbedsPicturesAndMarksTheMissingOne)
{
    const NoteExport::Page page = NoteExport::htmlPage(QString::fromUtf8(test::readAll(note)), note.parent(), "Plan");
    const QString& html = page.html;
    EXPECT_TRUE(html.startsWith("<!DOCTYPE html>"));
    EXPECT_TRUE(html.contains("<title>Plan</title>"));
    EXPECT_TRUE(html.contains("<h1>The Plan</h1>"));
    EXPECT_TRUE(html.contains("<span class=\"tok-keyword\">return</span>")) << html.toStdString();
    EXPECT_TRUE(html.contains(".tok-keyword {")); // the highlighter's style sheet is in the page
    EXPECT_TRUE(html.contains("<th>Step</th>"));
    EXPECT_TRUE(html.contains("<tr><th>status</th><td>doing</td></tr>")); // front matter as a small table
    EXPECT_TRUE(html.contains("<tr><th>tags</th><td>a, b</td></tr>"));
    EXPECT_FALSE(html.contains("status: doing"));
    EXPECT_TRUE(html.contains("src=\"data:image/png;base64," + QString::fromLatin1(png(Qt::red).toBase64()) + "\""));
    EXPECT_TRUE(html.contains("alt=\"a dot\""));
    EXPECT_TRUE(html.contains("Missing picture \u201Cgone.png\u201D"));
    EXPECT_TRUE(html.contains("src=\"https://example.com/x.png\""));
    EXPECT_FALSE(html.contains("image:"));
    EXPECT_FALSE(html.contains("task:")); // the box is shown, not a toggle
    EXPECT_TRUE(html.contains(QChar(0x2610)));
    EXPECT_EQ(page.missingPictures, 1);
    EXPECT_EQ(NoteExport::missingPicturesNote(page.missingPictures), "1 picture was missing");
    EXPECT_EQ(NoteExport::missingPicturesNote(2), "2 pictures were missing");
    EXPECT_EQ(NoteExport::missingPicturesNote(0), "");
}

TEST_F(NoteExportTest, PdfHasPagesAndCountsTheMissingPicture)
{
    const Result<NoteExport::Exported> exported = NoteExport::exportNote(note, NoteExport::Format::pdf);
    ASSERT_TRUE(exported.has_value()) << exported.error().toStdString();
    EXPECT_TRUE(exported->bytes.startsWith("%PDF"));
    EXPECT_EQ(exported->missingPictures, 1);
    const FilePath pdf = tree.file("out/Plan.pdf", exported->bytes);
    QPdfDocument document;
    document.load(QString::fromLocal8Bit(pdf.native()));
    ASSERT_EQ(document.status(), QPdfDocument::Status::Ready);
    EXPECT_GE(document.pageCount(), 1);
    const QString text = document.getAllText(0).text();
    EXPECT_TRUE(text.contains("The Plan")) << text.toStdString();
    EXPECT_TRUE(text.contains("Missing picture")) << text.toStdString();
    // Body text is of reading size on the page (points), not specks.
    const qsizetype at = text.indexOf("write it");
    ASSERT_GE(at, 0);
    const QRectF words = document.getSelectionAtIndex(0, int(at), 8).boundingRectangle();
    EXPECT_GE(words.height(), 8.0) << words.height();
    EXPECT_LE(words.height(), 20.0) << words.height();
    EXPECT_EQ(document.metaData(QPdfDocument::MetaDataField::Title).toString(), "Plan");
}

TEST_F(NoteExportTest, ANoteThatIsntUtf8IsRefusedInWords)
{
    const FilePath bad = tree.file("notes/bad.md", QByteArray("# \xff\xfe\n"));
    const Result<NoteExport::Exported> exported = NoteExport::exportNote(bad, NoteExport::Format::html);
    ASSERT_FALSE(exported.has_value());
    EXPECT_EQ(exported.error(), "Couldn\u2019t export \u201Cbad.md\u201D: it isn\u2019t UTF-8 text.");
    EXPECT_FALSE(NoteExport::exportNote(tree.path("notes/none.md"), NoteExport::Format::pdf).has_value());
}

TEST_F(NoteExportTest, TheEngineMakesTheExportBesideTheNoteUnderAFreeName)
{
    tree.file("notes/Plan.html", "mine\n");
    EXPECT_EQ(NoteExport::exportPath(note, NoteExport::Format::html), tree.path("notes/Plan 2.html"));
    EXPECT_EQ(NoteExport::exportPath(note, NoteExport::Format::pdf), tree.path("notes/Plan.pdf"));

    FileOperations operations;
    QUndoStack undo;
    std::optional<actions::ExportDone> done;
    actions::exportNoteTo(operations, note, NoteExport::Format::html, &undo, [&](const actions::ExportDone& result) { done = result; });
    ASSERT_TRUE(test::waitUntil([&] { return done.has_value() && operations.isIdle(); }));
    EXPECT_EQ(done->made, tree.path("notes/Plan 2.html"));
    EXPECT_EQ(done->message, "1 picture was missing in \u201CPlan 2.html\u201D");
    EXPECT_TRUE(test::readAll(done->made).contains("data:image/png;base64,"));
    EXPECT_EQ(test::readAll(tree.path("notes/Plan.html")), "mine\n");
    EXPECT_EQ(undo.undoText(), "Export Note as HTML");
    undo.undo();
    ASSERT_TRUE(test::waitUntil([&] { return operations.isIdle(); }));
    EXPECT_FALSE(test::exists(done->made)); // in the Trash

    done.reset();
    actions::exportNoteTo(operations, tree.file("notes/bad.md", QByteArray("\xff")), NoteExport::Format::pdf, &undo,
                          [&](const actions::ExportDone& result) { done = result; });
    ASSERT_TRUE(test::waitUntil([&] { return done.has_value(); }));
    EXPECT_TRUE(done->made.isEmpty());
    EXPECT_TRUE(done->message.contains("UTF-8"));
    EXPECT_FALSE(test::exists(tree.path("notes/bad.pdf")));
}

} // namespace
