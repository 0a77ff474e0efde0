// The album editor's form.
#pragma once

#include <optional>
#include <string>

#include "setup/Choosers.h"
#include "setup/SetupWindow.h"
#include "setup/rules/AlbumEditor.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace pixmora {

class SContainer;
class SkinButton;

/// What came of a showing.
struct AlbumOutcome {
    enum class Kind { Unchanged, Saved, Deleted };
    Kind What = Kind::Unchanged;
    AlbumFields Fields;  ///< as they were saved
};

/// Creates, edits or deletes one album, at once; modal.
class frmSetupAlbum : public SetupWindow {
public:
    /// @param editAlbumName the album being edited; none creates one
    explicit frmSetupAlbum(QWidget *parent, const std::optional<std::string> &editAlbumName = std::nullopt,
                           Choosers choosers = DesktopChoosers());

    void SetDirectory(const std::string &path);
    const AlbumOutcome &Outcome() const { return outcome_; }

protected:
    void CloseByOwner() override { done(Rejected); }
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QLayout *MakeNameRows();
    QLayout *MakeShareRows();
    QLayout *MakeFeaturedRows();
    void ConnectControls();
    void Load(const AlbumFields &fields);
    AlbumFields Fields() const;
    void RefuseBadCharacter();
    void ChangeDirectory();
    void GetFolderName();
    void BrowseFeaturedImage();
    void Mend(AlbumEditor::Field field);
    void Accept();
    void Delete();
    void End(AlbumOutcome::Kind what);

    AlbumEditor editor_;
    Choosers choosers_;
    AlbumOutcome outcome_;
    QLineEdit *txtAlbumName;
    QLineEdit *txtAlbumPath;
    SkinButton *cmdAlbumChangeDir;
    QLineEdit *txtDescription;
    QCheckBox *chkAlbumSubDirs;
    QCheckBox *chkAlbumPictures;
    QCheckBox *chkAlbumMovies;
    QRadioButton *optFeaturedImageNone;
    QRadioButton *optFeaturedImageRandom;
    QRadioButton *optFeaturedImageSpecified;
    QLineEdit *txtFeaturedImagePath;
    SkinButton *cmdBrowseFeaturedImage;
    SkinButton *cmdOK;
    SkinButton *cmdCancel;
    SkinButton *cmdDelete;
};

}  // namespace pixmora
