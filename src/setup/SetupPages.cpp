// The tabs of the setup dialog, as they are built.
#include "setup/SetupPages.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSlider>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <memory>

#include "setup/FormParts.h"
#include "setup/PageFrame.h"

namespace pixmora {

using namespace FormParts;

namespace {

QVBoxLayout *Rows(std::initializer_list<QWidget *> widgets) {
    auto *rows = new QVBoxLayout;
    for (QWidget *widget : widgets) rows->addWidget(widget);
    return rows;
}

/// Radio buttons of one question, in a group that goes by the name; each option has its index behind that.
QVBoxLayout *OptionRows(QWidget *page, const char *name, std::initializer_list<const char *> captions) {
    auto *group = new QButtonGroup(page);
    group->setObjectName(QLatin1String(name));
    auto *rows = new QVBoxLayout;
    for (const char *caption : captions) {
        const int index = static_cast<int>(group->buttons().size());
        auto *option = Option(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index), caption);
        group->addButton(option, index);
        rows->addWidget(option);
    }
    return rows;
}

/// A slider beside the figures that it comes to.
QLayout *SliderRow(const char *caption, const char *sliderName,
                   std::initializer_list<std::pair<const char *, const char *>> figures) {
    auto *grid = new QGridLayout;
    grid->setVerticalSpacing(4);
    auto *slider = Slider(sliderName, 1, 5);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setTickInterval(1);
    AddRow(*grid, caption, slider);
    int row = grid->rowCount();
    for (const auto &[words, name] : figures) {
        grid->addWidget(new QLabel(QLatin1String(words)), row, 0);
        grid->addWidget(Label(name), row++, 1);
    }
    return grid;
}

SContainer *MakePictureBox() {
    auto *columns = new QHBoxLayout;
    columns->setSpacing(24);
    columns->addLayout(
        SliderRow("Size:", "sldImageSize",
                  {{"Thumbs:", "lblThumbSize"}, {"Previews:", "lblPreviewSize"}, {"Slideshows:", "lblSlideshowSize"}}));
    columns->addLayout(SliderRow(
        "Quality:", "sldImageQuality",
        {{"Thumbs:", "lblThumbQuality"}, {"Previews:", "lblPreviewQuality"}, {"Slideshows:", "lblSlideshowQuality"}}));
    return Box("SContainerThumbnails", "Picture Size and Quality", columns, Help("lblHelpThumbnails"));
}

SContainer *MakeSortBox(QWidget *page) {
    auto *methods = OptionRows(page, "optDirSortMethod", {"By Name", "By Date Created", "Custom Order"});
    auto *set = Button("cmdSetDirOrder", "Set...");
    set->setAccessibleDescription(QStringLiteral("Sets the custom order of directories"));
    auto *custom = new QHBoxLayout;
    const std::unique_ptr<QLayoutItem> last(methods->takeAt(methods->count() - 1));
    custom->addWidget(last->widget());
    custom->addWidget(set);
    methods->addLayout(custom);
    auto *orders = OptionRows(page, "optDirSortOrder", {"Ascending", "Descending"});
    orders->addStretch();
    auto *columns = new QHBoxLayout;
    columns->addLayout(methods);
    columns->addSpacing(24);
    columns->addLayout(orders);
    columns->addStretch();
    return Box("SContainerSorting", "Directory Sorting", columns, Help("lblHelpDirectorySorting"));
}

}  // namespace

QWidget *MakeIntroductionPage() {
    auto *notes = Rows({Note("General: Give your website a title and welcome message."),
                        Note("Albums: Create albums by choosing which directories to share with the outside world."),
                        Note("Firewall Check: Run the firewall check to make sure your visitors will be able to "
                             "connect to your website."),
                        Note("Continue by clicking Next >>")});
    notes->setSpacing(14);
    auto *frame = new PageFrame;
    frame->Add(Box("SContainerIntroduction", "Introduction", notes, Help("lblHelpSample")));
    return frame;
}

QWidget *MakeGeneralPage() {
    auto *site = new QGridLayout;
    AddRow(*site, "Title:", TextBox("txtServerTitle"));
    AddRow(*site, "Author:", TextBox("txtAuthor"));
    AddRow(*site, "Description:", TextBox("txtDesc"));
    auto *scheme = new QGridLayout;
    AddRow(*scheme, "Style:", DropDown("cboStyle"));
    scheme->setColumnStretch(2, 1);
    auto *welcome = TextArea("txtWelcome", 5);
    welcome->setAccessibleName(QStringLiteral("Welcome Message"));
    auto *frame = new PageFrame;
    frame->Add(Box("SContainerSiteInfo", "Site Information", site, Help("lblHelpSiteInfo")));
    frame->Add(Box("SContainerScheme", "Color Scheme", scheme, Help("lblHelpScheme")));
    frame->AddTall(Box("SContainerWelcome", "Welcome Message", Rows({welcome, Note("Note: HTML is Allowed")}),
                       Help("lblHelpWelcome")));
    frame->Add(
        Box("SContainerOperation", "Operation",
            Rows({CheckBox("chkRunOnStart", "Run Pixmora! when Windows loads and start website automatically.")}),
            Help("lblHelpOperation")));
    return frame;
}

QWidget *MakeAlbumsPage() {
    auto *albums = ListView("lstAlbums", {"Album Name", "Path"}, 10);
    albums->setAccessibleName(QStringLiteral("Albums"));
    auto *rows = Rows({albums});
    rows->addWidget(Button("cmdAlbumAdd", "Create Album..."), 0, Qt::AlignLeft);
    auto *frame = new PageFrame;
    frame->Add(
        Note("Albums are the core of your website. This is where you decide which directories to share with "
             "the outside world."));
    frame->AddTall(Box("SContainerAlbums", "Current Albums", rows, Help("lblHelpAlbums")));
    return frame;
}

QWidget *MakeLayoutPage() {
    auto *frame = new PageFrame;
    auto *files = new QHBoxLayout;
    for (const auto &[caption, name] :
         {std::pair{"Files Per Row:", "cboFilesPerRow"}, std::pair{"Files Per Page:", "cboFilesPerPage"}}) {
        auto *grid = new QGridLayout;
        AddRow(*grid, caption, DropDown(name));
        files->addLayout(grid);
        files->addSpacing(24);
    }
    files->addStretch();
    frame->Add(Box("SContainerFileLayout", "Media File Layout", files, Help("lblHelpFileLayout")));
    frame->Add(MakePictureBox());
    frame->Add(MakeSortBox(frame));
    auto *webcam = new QHBoxLayout;
    auto *enabled = CheckBox("chkWebcam", "Enabled");
    enabled->setAccessibleDescription(QStringLiteral("Webcam"));
    auto *setup = Button("cmdSetupWebCam", "Setup...");
    setup->setAccessibleDescription(QStringLiteral("Sets up the webcam"));
    webcam->addWidget(enabled);
    webcam->addSpacing(24);
    webcam->addWidget(setup);
    webcam->addStretch();
    frame->Add(Box("SContainerWebcam", "Webcam", webcam, Help("lblHelpWebcam")));
    return frame;
}

QWidget *MakeAccessPage() {
    auto *rights = ListView("lvwRestricted", {"Share", "Directory", "Username"}, 12);
    rights->setAccessibleName(QStringLiteral("Protected Directories"));
    auto *rows = Rows({rights});
    auto *setup = Button("cmdSetupRestricted", "Setup...");
    setup->setAccessibleDescription(QStringLiteral("Sets up users and protected directories"));
    rows->addWidget(setup, 0, Qt::AlignLeft);
    auto *frame = new PageFrame;
    frame->AddTall(Box("SContainerRestricted", "Protected Directories", rows, Help("lblHelpRestrictedDirs")));
    return frame;
}

}  // namespace pixmora
