// The controls of the setup dialogs, each with its name, its look and its words for those who can't see it.
#pragma once

#include <QIcon>
#include <QString>
#include <functional>
#include <initializer_list>
#include <string>

#include "console/LinkLabel.h"
#include "console/SContainer.h"
#include "console/SkinButton.h"

class QAbstractItemView;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QRadioButton;
class QSlider;
class QTreeWidget;

namespace pixmora::FormParts {

/// A text that wraps.
QLabel *Note(const char *text);
QLabel *Label(const char *name, const QString &text = {});
QLineEdit *TextBox(const char *name);
QPlainTextEdit *TextArea(const char *name, int lines);
QCheckBox *CheckBox(const char *name, const char *caption);
QRadioButton *Option(const QString &name, const char *caption);
QComboBox *DropDown(const char *name, bool isEditable = false);
QSlider *Slider(const char *name, int first, int last);
/// Rows of whole lines, one selected at most. It shows about so many lines before it scrolls. @param hint shown in its
/// place while it is empty
QTreeWidget *ListView(const char *name, std::initializer_list<const char *> columns, int lines, const char *hint = "");
/// Gives the rows some air above and below.
void MakeRoomy(QAbstractItemView &view);
/// A "&" in the caption marks the key that presses it.
SkinButton *Button(const char *name, const char *caption);
/// Runs the handler at each click.
LinkLabel *Link(const char *name, const QString &text, const char *purpose, std::function<void()> open);
/// The "?" that shows the help text of its own name. @param serviceName where the text ends in it
LinkLabel *Help(const char *name, std::function<std::string()> serviceName = {});

/// The captioned frame around the content. @param help shown at its upper right, or null
SContainer *Captioned(const char *name, const char *caption, QLayout *content, QWidget *help = nullptr);

/// A row "caption: control", named by its caption for assistive technology. @return the caption's label
QLabel *AddRow(QGridLayout &grid, const char *caption, QWidget *control);
/// The buttons that end a dialog, at its right.
QLayout *ButtonRow(std::initializer_list<SkinButton *> buttons);

/// The small picture of a folder or an album.
QIcon FolderIcon();

}  // namespace pixmora::FormParts
