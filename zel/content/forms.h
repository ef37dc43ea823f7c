// zel/content/forms.h: the form dialog, which asks the user for several values at once, each
// tied to one of the program's variables, and the dialog functions of the C interface.
#pragma once

#include <QDialog>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QVBoxLayout;

class ZEL_FormDialog : public QDialog
{
    Q_OBJECT

public:
    // Item types, as the program side records them.
    enum ItemType { comboBox = 1, checkBox = 2, lineEdit = 3, fileField = 4, radioButtons = 5 };

    explicit ZEL_FormDialog(QWidget* parent = nullptr);

    // Each item goes below the ones before it. "selected" counts from 1.
    void addLabel(int id, const QString& text);
    void addComboBox(int id, const QMap<QString, QVariant>& properties);
    // "selected" 0 checks no button; below 0 or above the count, the first.
    void addRadioButtons(int id, const QMap<QString, QVariant>& properties);
    void addCheckBox(int id, const QString& text, bool checked);
    void addLineEdit(int id, const QString& label, const QString& placeholder, const QString& text);
    // A line edit with a "..." button that opens a file dialog: "title", "placeholder", "text",
    // "defaultDirectory", "chooseDirectory", "allowNewFiles".
    void addFileDialog(int id, const QMap<QString, QVariant>& properties);

    // Shows the dialog modally with OK and Cancel; the result ("1" or "0") then getData().
    QStringList showModal();
    // One string per value item, in the order added: combo index from 1, 0 or 1 for a check box,
    // texts as typed, the id of the checked radio button or -1.
    QStringList getData() const;

public slots:
    void toolButtonReleased();

private:
    QList<int> itemOrder;
    QMap<int, int> types;
    QMap<int, QComboBox*> comboBoxes;
    QMap<int, QCheckBox*> checkBoxes;
    QMap<int, QLineEdit*> lineEdits;
    QMap<int, QLineEdit*> fileFields;
    QMap<int, QButtonGroup*> radioGroups;
    QVBoxLayout* layout;
};
