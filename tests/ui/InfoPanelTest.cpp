// Get Info in a real window: Ctrl+I opens the panel on the cursor's file, a permission box
// toggled with Space changes the file's mode through one undoable step, and Ctrl+Z restores it.
// A photo shows its camera and place, and the place goes from the panel once it is removed.

#include "WindowFixture.h"

#include "ui/panels/AccessEditor.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/InfoPanel.h"
#include "images/ImageMetadata.h"
#include "state/FileActions.h"
#include "support/TaggedJpeg.h"

#include <QCheckBox>
#include <QLabel>
#include <sys/stat.h>

namespace orwick::test {
namespace {

// The window with its panels drawn, as the program sets it up.
struct InfoPanelTest : WindowTest {
    void openWithPanels(const FilePath& folder)
    {
        open(folder);
        DiskToolKeys::follow(*state, window.get());
    }
};

unsigned modeOf(const FilePath& path)
{
    struct stat st {};
    ::lstat(path.c_str(), &st);
    return st.st_mode & 07777;
}

InfoPanel* infoPanel(QWidget* window) { return window->findChild<InfoPanel*>(); }

TEST_F(InfoPanelTest, EveryNameLinesUpInOneColumnWithThePermissionsLast)
{
    const FilePath file = tree.file("report.txt", "twelve bytes");
    const FilePath second = tree.file("second.txt", "more");
    openWithPanels(tree.root());
    select(file);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return infoPanel(window.get()) && infoPanel(window.get())->info().path == file; }));
    InfoPanel* panel = infoPanel(window.get());
    QApplication::processEvents();
    auto labelNamed = [panel](const QString& text) -> QLabel* {
        for (QLabel* label : panel->findChildren<QLabel*>())
            if (label->text() == text && label->isVisible())
                return label;
        return nullptr;
    };
    QLabel* name = labelNamed(QStringLiteral("Name"));
    QLabel* permissions = labelNamed(QStringLiteral("Permissions"));
    ASSERT_NE(name, nullptr);
    ASSERT_NE(permissions, nullptr);
    const QPoint nameEdge = name->mapTo(panel, name->rect().topRight());
    const QPoint permissionsEdge = permissions->mapTo(panel, permissions->rect().topRight());
    EXPECT_EQ(nameEdge.x(), permissionsEdge.x()) << "right edges of the names";
    EXPECT_GT(permissionsEdge.y(), nameEdge.y());
    // On the line of the grid's own heading, as every other name is on its value's first line.
    QLabel* read = labelNamed(QStringLiteral("Read"));
    ASSERT_NE(read, nullptr);
    const auto textTop = [panel](QLabel* label) { // the first row of the label with ink on it
        const QImage shot = label->grab().toImage();
        const QColor ground = shot.pixelColor(0, 0);
        for (int y = 0; y < shot.height(); ++y)
            for (int x = 0; x < shot.width(); ++x)
                if (shot.pixelColor(x, y) != ground)
                    return label->mapTo(panel, QPoint()).y() + y * label->height() / shot.height();
        return -1;
    };
    EXPECT_NEAR(textTop(permissions), textTop(read), 1) << "Permissions on the heading's line";
    // Another item's rows: the permissions still once, still last.
    select(second);
    ASSERT_TRUE(waitUntil([&] { return panel->info().path == second; }));
    QApplication::processEvents();
    EXPECT_EQ(panel->rowText(QStringLiteral("Name")), QStringLiteral("second.txt"));
    permissions = labelNamed(QStringLiteral("Permissions"));
    ASSERT_NE(permissions, nullptr);
    EXPECT_GT(permissions->mapTo(panel, QPoint()).y(), labelNamed(QStringLiteral("Name"))->mapTo(panel, QPoint()).y());
    int permissionRows = 0;
    for (QLabel* label : panel->findChildren<QLabel*>())
        permissionRows += label->text() == QStringLiteral("Permissions");
    EXPECT_EQ(permissionRows, 1);
}

TEST_F(InfoPanelTest, CtrlIShowsTheCursorsFileAndAToggledPermissionIsUndone)
{
    const FilePath file = tree.file("report.txt", "twelve bytes");
    ASSERT_EQ(::chmod(file.c_str(), 0644), 0);
    openWithPanels(tree.root());
    select(file);

    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return infoPanel(window.get()) && infoPanel(window.get())->info().path == file; }));
    InfoPanel* panel = infoPanel(window.get());
    EXPECT_EQ(panel->rowText(QStringLiteral("Name")), QStringLiteral("report.txt"));
    EXPECT_EQ(panel->rowText(QStringLiteral("Size")), QStringLiteral("12 bytes"));
    EXPECT_EQ(panel->rowText(QStringLiteral("MIME type")), QStringLiteral("text/plain"));
    EXPECT_EQ(state->panel(), WindowState::Panel::info);
    // Its footer names the keys it answers to, as the other sheets' footers do.
    EXPECT_EQ(panel->footer(), file.abbreviated() + QStringLiteral(" · Tab moves · Space ticks a permission · Ctrl+Z undoes · Esc closes"));

    QCheckBox* groupWrite = panel->accessEditor()->box(1, 1);
    EXPECT_FALSE(groupWrite->isChecked());
    groupWrite->setFocus();
    press(Qt::Key_Space);
    settle();
    ASSERT_TRUE(waitUntil([&] { return modeOf(file) == 0664u; })) << modeOf(file);
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Change Permissions"));
    ASSERT_TRUE(waitUntil([&] { return panel->info().access.mode == 0664u; })) << "the panel reads the file again";

    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    ASSERT_TRUE(waitUntil([&] { return modeOf(file) == 0644u; })) << modeOf(file);
    ASSERT_TRUE(waitUntil([&] { return !groupWrite->isChecked(); })) << "the box follows the undo";

    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return state->panel() == WindowState::Panel::none; }));
}

TEST_F(InfoPanelTest, AFolderIsMeasuredAndThePanelFollowsTheCursor)
{
    tree.file("box/a", "12345");
    tree.file("box/inner/b", "123");
    const FilePath other = tree.file("other.txt", "x");
    openWithPanels(tree.root());
    select(tree.path(QStringLiteral("box")));

    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return infoPanel(window.get()) != nullptr; }));
    InfoPanel* panel = infoPanel(window.get());
    ASSERT_TRUE(waitUntil([&] { return panel->rowText(QStringLiteral("Size")) == QStringLiteral("8 bytes in 3 items"); }))
        << panel->rowText(QStringLiteral("Size")).toStdString();
    EXPECT_EQ(panel->rowText(QStringLiteral("Kind")), QStringLiteral("Folder"));

    select(other);
    ASSERT_TRUE(waitUntil([&] { return panel->info().path == other; }));
    EXPECT_EQ(panel->rowText(QStringLiteral("Size")), QStringLiteral("1 byte"));
    EXPECT_FALSE(panel->accessEditor()->isHidden());

    pane()->click(tree.path(QStringLiteral("box")), Qt::ControlModifier); // two items
    ASSERT_TRUE(waitUntil([&] { return panel->rowText(QStringLiteral("Name")) == QStringLiteral("2 items"); }));
    EXPECT_TRUE(panel->accessEditor()->isHidden()) << "no permissions shown for several items as if all unset";
    EXPECT_EQ(panel->footer(), QStringLiteral("Esc closes")) << "no permissions to tick";
    select(other);
    ASSERT_TRUE(waitUntil([&] { return panel->info().path == other; }));
    EXPECT_FALSE(panel->accessEditor()->isHidden());
}

// A small JPEG that says which camera took it and where.
FilePath taggedPhoto(const TempTree& tree)
{
    return taggedJpeg(tree.path(QStringLiteral("pier.jpg")), {{"Exif.Image.Model", "Canon EOS R5"},
                                                              {"Exif.GPSInfo.GPSLatitudeRef", "N"},
                                                              {"Exif.GPSInfo.GPSLatitude", "51/1 30/1 0/1"},
                                                              {"Exif.GPSInfo.GPSLongitudeRef", "W"},
                                                              {"Exif.GPSInfo.GPSLongitude", "0/1 7/1 30/1"}});
}

TEST_F(InfoPanelTest, APhotoShowsItsCameraAndPlaceUntilThePlaceIsRemoved)
{
    const FilePath photo = taggedPhoto(tree);
    openWithPanels(tree.root());
    select(photo);
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return infoPanel(window.get()) && infoPanel(window.get())->info().path == photo; }));
    InfoPanel* panel = infoPanel(window.get());
    EXPECT_EQ(panel->rowText(QStringLiteral("Camera")), QStringLiteral("Canon EOS R5"));
    EXPECT_EQ(panel->rowText(QStringLiteral("Location")), QStringLiteral("51.50000° N, 0.12500° W"));
    EXPECT_EQ(panel->rowText(QStringLiteral("Metadata")), QStringLiteral("EXIF"));

    state->files().operations()->replaceInPlace(
        {photo}, {QStringLiteral("Remove Location"), QStringLiteral("Removing the location"), QStringLiteral("Remove Location")},
        [](const FilePath& file, const CancelFlag& cancel) { return strippedBytes(file, MetadataStrip::location, cancel); },
        state->undoStack());
    ASSERT_TRUE(waitUntil([&] { return panel->rowText(QStringLiteral("Location")).isEmpty(); }))
        << panel->rowText(QStringLiteral("Location")).toStdString();
    EXPECT_EQ(panel->rowText(QStringLiteral("Camera")), QStringLiteral("Canon EOS R5"));

    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return !panel->rowText(QStringLiteral("Location")).isEmpty(); })) << "undo gives the place back";
}

} // namespace
} // namespace orwick::test
