// The tabs of the setup dialog, as they are built.
#include "setup/SetupPages.h"

#include <QGridLayout>
#include <QRadioButton>
#include <QVBoxLayout>
#include <memory>
#include <utility>

namespace pixmora {

using namespace FormParts;

namespace {

QVBoxLayout *Rows(std::initializer_list<QWidget *> widgets) {
    auto *rows = new QVBoxLayout;
    for (QWidget *widget : widgets) rows->addWidget(widget);
    return rows;
}

/// Radio buttons of one question, in a group that goes by the name; each option has its index behind that.
QVBoxLayout *OptionRows(QButtonGroup &group, const char *name, std::initializer_list<const char *> captions) {
    group.setObjectName(QLatin1String(name));
    auto *rows = new QVBoxLayout;
    for (const char *caption : captions) {
        const int index = static_cast<int>(group.buttons().size());
        auto *option = Option(QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index), caption);
        group.addButton(option, index);
        rows->addWidget(option);
    }
    return rows;
}

/// A slider above the figures that it comes to.
QLayout *SliderRows(const char *caption, QSlider *slider, QLabel *thumbs, QLabel *previews, QLabel *slideshows) {
    auto *grid = new QGridLayout;
    grid->setVerticalSpacing(4);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setTickInterval(1);
    AddRow(*grid, caption, slider);
    for (const auto &[words, figure] :
         {std::pair{"Thumbs:", thumbs}, std::pair{"Previews:", previews}, std::pair{"Slideshows:", slideshows}}) {
        const int row = grid->rowCount();
        grid->addWidget(new QLabel(QLatin1String(words)), row, 0);
        grid->addWidget(figure, row, 1);
    }
    return grid;
}

}  // namespace

IntroductionPage::IntroductionPage() {
    auto *notes = Rows({Note("General: Give your website a title and welcome message."),
                        Note("Albums: Create albums by choosing which directories to share with the outside world."),
                        Note("Firewall Check: Run the firewall check to make sure your visitors will be able to "
                             "connect to your website."),
                        Note("Continue by clicking Next >>")});
    notes->setSpacing(14);
    Add(Captioned("SContainerIntroduction", "Introduction", notes, Help("lblHelpSample")));
}

GeneralPage::GeneralPage() {
    auto *site = new QGridLayout;
    AddRow(*site, "Title:", txtServerTitle);
    AddRow(*site, "Author:", txtAuthor);
    AddRow(*site, "Description:", txtDesc);
    auto *scheme = new QGridLayout;
    AddRow(*scheme, "Style:", cboStyle);
    scheme->setColumnStretch(2, 1);
    txtWelcome->setAccessibleName(QStringLiteral("Welcome Message"));
    Add(Captioned("SContainerSiteInfo", "Site Information", site, Help("lblHelpSiteInfo")));
    Add(Captioned("SContainerScheme", "Color Scheme", scheme, Help("lblHelpScheme")));
    AddTall(Captioned("SContainerWelcome", "Welcome Message", Rows({txtWelcome, Note("Note: HTML is Allowed")}),
                      Help("lblHelpWelcome")));
    Add(Captioned("SContainerOperation", "Operation", Rows({chkRunOnStart}), Help("lblHelpOperation")));
}

AlbumsPage::AlbumsPage() {
    lstAlbums->setAccessibleName(QStringLiteral("Albums"));
    auto *rows = Rows({lstAlbums});
    rows->addWidget(cmdAlbumAdd, 0, Qt::AlignLeft);
    Add(
        Note("Albums are the core of your website. This is where you decide which directories to share with the "
             "outside world."));
    AddTall(Captioned("SContainerAlbums", "Current Albums", rows, Help("lblHelpAlbums")));
}

LayoutPage::LayoutPage() {
    auto *files = new QHBoxLayout;
    for (const auto &[caption, list] :
         {std::pair{"Files Per Row:", cboFilesPerRow}, std::pair{"Files Per Page:", cboFilesPerPage}}) {
        auto *grid = new QGridLayout;
        AddRow(*grid, caption, list);
        files->addLayout(grid);
        files->addSpacing(24);
    }
    files->addStretch();
    Add(Captioned("SContainerFileLayout", "Media File Layout", files, Help("lblHelpFileLayout")));
    Add(MakePictureBox());
    Add(MakeSortBox());
    Add(MakeVisitorBox());
    auto *webcam = new QHBoxLayout;
    chkWebcam->setAccessibleDescription(QStringLiteral("Webcam"));
    cmdSetupWebCam->setAccessibleDescription(QStringLiteral("Sets up the webcam"));
    webcam->addWidget(chkWebcam);
    webcam->addSpacing(24);
    webcam->addWidget(cmdSetupWebCam);
    webcam->addStretch();
    Add(Captioned("SContainerWebcam", "Webcam", webcam, Help("lblHelpWebcam")));
}

SContainer *LayoutPage::MakePictureBox() {
    auto *columns = new QHBoxLayout;
    columns->setSpacing(24);
    columns->addLayout(SliderRows("Size:", sldImageSize, lblThumbSize, lblPreviewSize, lblSlideshowSize));
    columns->addLayout(
        SliderRows("Quality:", sldImageQuality, lblThumbQuality, lblPreviewQuality, lblSlideshowQuality));
    return Captioned("SContainerThumbnails", "Picture Size and Quality", columns, Help("lblHelpThumbnails"));
}

SContainer *LayoutPage::MakeSortBox() {
    auto *methods = OptionRows(*optDirSortMethod, "optDirSortMethod", {"By Name", "By Date Created", "Custom Order"});
    cmdSetDirOrder->setAccessibleDescription(QStringLiteral("Sets the custom order of directories"));
    auto *custom = new QHBoxLayout;
    const std::unique_ptr<QLayoutItem> last(methods->takeAt(methods->count() - 1));
    custom->addWidget(last->widget());
    custom->addWidget(cmdSetDirOrder);
    methods->addLayout(custom);
    auto *orders = OptionRows(*optDirSortOrder, "optDirSortOrder", {"Ascending", "Descending"});
    orders->addStretch();
    auto *columns = new QHBoxLayout;
    columns->addLayout(methods);
    columns->addSpacing(24);
    columns->addLayout(orders);
    columns->addStretch();
    return Captioned("SContainerSorting", "Directory Sorting", columns, Help("lblHelpDirectorySorting"));
}

SContainer *LayoutPage::MakeVisitorBox() {
    auto *cache = new QGridLayout;
    AddRow(*cache, "Minutes that browsers keep pictures:", cboBrowserCache);
    cache->setColumnStretch(2, 1);
    auto *rows = Rows({chkMoreTypes, chkShowPlaces});
    rows->addLayout(cache);
    return Captioned("SContainerVisitors", "Pictures and Visitors", rows, Help("lblHelpVisitors"));
}

AccessPage::AccessPage() {
    lvwRestricted->setAccessibleName(QStringLiteral("Protected Directories"));
    auto *rows = Rows({lvwRestricted});
    cmdSetupRestricted->setAccessibleDescription(QStringLiteral("Sets up users and protected directories"));
    rows->addWidget(cmdSetupRestricted, 0, Qt::AlignLeft);
    AddTall(Captioned("SContainerRestricted", "Protected Directories", rows, Help("lblHelpRestrictedDirs")));
}

}  // namespace pixmora
