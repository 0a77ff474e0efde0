// The help texts of the setup dialogs.
#include "setup/rules/HelpTexts.h"

#include <algorithm>
#include <iterator>

#include "core/site/OwnerDialogue.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

namespace {

constexpr std::string_view endsInServiceName = "lblHelpListServerOnline";

constexpr HelpText helpTexts[] = {
    {"lblHelpAlbums", "Current Albums",
     "This is a list of each album you have created. The list displays the album name and the directory on your "
     "computer it shares. Click an album in the list to edit or delete it."},
    {"lblHelpDirectorySorting", "Directory Sorting",
     "Choose the order to display subdirectories if an album contains them. You may decide to define the order in "
     "which they are displayed. If so, check Custom Order and click Set."},
    {"lblHelpFileLayout", "Media File Layout",
     "When a visitor clicks an albums on your website they will see a list of pictures and movies. You can control how "
     "many files they will see per row and per page. If there are more files in the directory than you have set them "
     "to see per page, they will be given Next and Previous buttons to navigate from page to page.\r\n\r\nTo show all "
     "files on one page, set Files Per Page to All."},
    {"lblHelpListServerOnline", "List Server Online",
     "You can attract additional visitors by letting us list your website on "},
    {"lblHelpOperation", "Operation",
     "Check the first box to have Pixmora! run automatically when Windows starts. Check the second box to have "
     "Pixmora! automatically start when it's loaded."},
    {"lblHelpPortSetup", "Port Setup",
     "9 times out of 10 you can leave this value alone. The only time you would need to change it is if your router or "
     "Internet Service Provider blocks port 80 for security reasons."},
    {"lblHelpPublicAddress", "Public Address",
     "The address that your website calls itself by, for instance photos.example or photos.example:8080. Give it if "
     "you "
     "have a name of your own or if visitors come through another computer. Leave it empty to have the address found "
     "out by itself."},
    {"lblHelpRedirecting", "Redirecting Address",
     "Having to tell your friends your IP address everytime they want to see your site is very annoying, especially if "
     "your IP changes everytime you connect to the Internet. The redirecting address gives you an address that never "
     "changes."},
    {"lblHelpRestrictedDirs", "Protected Directories",
     "Your albums may contain several subdirectories and you may forget which ones are protected. This shows a list of "
     "all protected directories so you don't need to browse through each one. To delete a username from a protected "
     "directory or to unprotect an entire directory, click its row in the list."},
    {"lblHelpSample", "Sample Help", "A description to help you will be displayed here."},
    {"lblHelpScheme", "Color Scheme",
     "Choose a color scheme for your website. This will affect only the colors, not the layout, of your website."},
    {"lblHelpService", "Central Service",
     "A central service can list your website, check your connection and give you an address that never changes. Enter "
     "its address and the name of your account there. Without one, leave both empty: your website works all the "
     "same."},
    {"lblHelpSiteInfo", "Site Information",
     "Give your site a title and description, and enter your name. These will be displayed on your website."},
    {"lblHelpThumbnails", "Thumbnail Size",
     "When visitors click an album on your site, its pictures will be listed as a set of thumbnails. Decide how big "
     "you want these thumbnails to be."},
    {"lblHelpVisitors", "Pictures and Visitors",
     "Check the first box to show .jpeg, .png, .webp, .heic, .heif and .avif pictures and .mp4, .m4v, .webm and .mkv "
     "movies as well. Check the second box to lead visitors from a photograph to a map of the place where it was "
     "taken.\r\n\r\nIf browsers keep pictures, a visitor who goes back to a page doesn't wait for them again. What you "
     "change is then seen when the minutes have gone by. To have nothing kept, choose Off."},
    {"lblHelpWebcam", "Webcam",
     "If you have a webcam, you can have it capture images on an interval and display them on the front page of your "
     "site. Click Enable and configure your camera on the following form."},
    {"lblHelpWelcome", "Welcome Message",
     "Post a message to be displayed on the front page of your website. You may use HTML to format your message."},
    {"lblHelpAlbumDirs", "Album Directories",
     "All of your albums are listed here. To view and protect subdirectories in an album, click the plus to expand the "
     "tree and click the appropriate directory."},
    {"lblHelpUserAccess", "User Access",
     "When you click an album or directory on the left, its information will appear here.\r\n\r\nTo protect the "
     "directory, check off the usernames you want to give access to below.\r\n\r\nTo edit or delete a username, select "
     "it in the listbox and click Edit or Delete."},
    {"lblHelpAutoRestrict", "Auto Restrict",
     "To automatically protect directories that contain certain words or phrases, add them to the box below. Separate "
     "multiple entries by a new line. Wildcards (*) are allowed.\r\n\r\nThe only users that will be able to view these "
     "directories will be those who you checked off 'Allow access to all directories'."},
    {"lblHelpInterval", "Capture Interval",
     "Choose how often to take a picture with your webcam. The shorter the interval, the more \"live\" it will seem."},
    {"lblHelpSource", "Capture Source",
     "If you have more than one capture device, select which you would like to capture from."},
    {"lblHelpAlbum", "Recommendation",
     "It is recommended that you put all of your pictures in one directory. Point your album to this directory. "
     "\r\n\r\nThen within this directory, create subdirectories to organize events (e.g., Summer Vacation, New Years, "
     "etc.).\r\n\r\nThis is recommended so that when you transfer more pictures over from your camera, you can put "
     "them in another subdirectory inside this album and they will appear on your website instantly without you having "
     "to create a new album for each event."},
    // These two stand ready; no label shows them yet.
    {"lblHelpPreviews", "Preview Size",
     "When a visitor first clicks a picture on your site, they will be given a bigger version of the picture along "
     "with information about when the picture was taken, etc. Decide how big you want this picture to be."},
    {"lblHelpSlideshows", "Slideshow Size",
     "Decide how big you want your pictures to be when a visitor decides to view a slideshow of them. Or, if you'd "
     "rather disable slideshows altogether, uncheck the box."},
};

}  // namespace

const HelpText &HelpTextOf(std::string_view control) {
    const auto *const found =
        std::ranges::find_if(helpTexts, [control](const HelpText &help) { return help.Control == control; });
    if (found == std::end(helpTexts)) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return *found;
}

void ShowHelpOf(std::string_view control, const std::string &serviceName) {
    const HelpText &help = HelpTextOf(control);
    ShowHelpBalloon(help.Title, control == endsInServiceName ? help.Text + serviceName : help.Text);
}

std::string ServiceName(std::string_view serviceBase) {
    const std::size_t scheme = serviceBase.find("://");
    std::string_view host = scheme == std::string_view::npos ? serviceBase : serviceBase.substr(scheme + 3);
    host = host.substr(0, host.find_first_of("/:"));
    return host.empty() ? "a central service" : std::string(host);
}

}  // namespace pixmora
