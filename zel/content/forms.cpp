// zel/content/forms.cpp: the form dialog's items, its answers, and the dialog functions of the C
// interface with the program-side record of which variable each answer goes to.
#include "zel/content/forms.h"

#include "zel/content/contentcontroller.h"
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSpacerItem>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <mutex>

ZEL_FormDialog::ZEL_FormDialog(QWidget* parent) : QDialog(parent), layout(new QVBoxLayout(this))
{
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(10);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
}

namespace {
QHBoxLayout* row(const QString& label, QWidget* field)
{
    auto* line = new QHBoxLayout;
    line->addWidget(new QLabel(label));
    line->addWidget(field);
    return line;
}
} // namespace

void ZEL_FormDialog::addLabel(int, const QString& text)
{
    layout->addWidget(new QLabel(text, this));
}

void ZEL_FormDialog::addComboBox(int id, const QMap<QString, QVariant>& properties)
{
    auto* box = new QComboBox(this);
    box->addItems(properties.value(QStringLiteral("itemList")).toStringList());
    box->setCurrentIndex(properties.value(QStringLiteral("selected")).toInt() - 1);
    layout->addLayout(row(properties.value(QStringLiteral("title")).toString(), box));
    itemOrder.append(id);
    types.insert(id, comboBox);
    comboBoxes.insert(id, box);
}

void ZEL_FormDialog::addRadioButtons(int id, const QMap<QString, QVariant>& properties)
{
    const QStringList items = properties.value(QStringLiteral("itemList")).toStringList();
    int selected = properties.value(QStringLiteral("selected")).toInt();
    if (selected < 0 || selected > items.size()) selected = 1;
    auto* column = new QVBoxLayout;
    column->addWidget(new QLabel(properties.value(QStringLiteral("title")).toString(), this));
    auto* group = new QButtonGroup(this);
    group->setExclusive(true);
    for (int i = 0; i < items.size(); ++i) {
        auto* button = new QRadioButton(items.at(i), this);
        group->addButton(button, i + 1);
        column->addWidget(button);
        if (i + 1 == selected) button->setChecked(true);
    }
    layout->addLayout(column);
    itemOrder.append(id);
    types.insert(id, radioButtons);
    radioGroups.insert(id, group);
}

void ZEL_FormDialog::addCheckBox(int id, const QString& text, bool checked)
{
    auto* box = new QCheckBox(text, this);
    box->setChecked(checked);
    layout->addWidget(box);
    itemOrder.append(id);
    types.insert(id, checkBox);
    checkBoxes.insert(id, box);
}

void ZEL_FormDialog::addLineEdit(int id, const QString& label, const QString& placeholder,
                                 const QString& text)
{
    auto* edit = new QLineEdit(this);
    edit->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    edit->setPlaceholderText(placeholder);
    edit->setText(text);
    layout->addLayout(row(label, edit));
    itemOrder.append(id);
    types.insert(id, lineEdit);
    lineEdits.insert(id, edit);
}

void ZEL_FormDialog::addFileDialog(int id, const QMap<QString, QVariant>& properties)
{
    auto* edit = new QLineEdit(this);
    edit->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    edit->setPlaceholderText(properties.value(QStringLiteral("placeholder")).toString());
    edit->setText(properties.value(QStringLiteral("text")).toString());
    auto* button = new QToolButton(this);
    button->setText("...");
    button->setProperty("labelId", id);
    for (const char* key : {"defaultDirectory", "chooseDirectory", "allowNewFiles", "title"})
        button->setProperty(key, properties.value(QLatin1String(key)));
    connect(button, &QToolButton::released, this, &ZEL_FormDialog::toolButtonReleased);
    QHBoxLayout* line = row(properties.value(QStringLiteral("title")).toString(), edit);
    line->addWidget(button);
    layout->addLayout(line);
    itemOrder.append(id);
    types.insert(id, fileField);
    fileFields.insert(id, edit);
}

void ZEL_FormDialog::toolButtonReleased()
{
    const QObject* button = sender();
    if (!button) return;
    const QString title = button->property("title").toString();
    const QString directory = button->property("defaultDirectory").toString();
    QString name;
    if (button->property("allowNewFiles").toBool())
        name = QFileDialog::getSaveFileName(this, title, directory);
    else if (button->property("chooseDirectory").toBool())
        name = QFileDialog::getExistingDirectory(this, title, directory, QFileDialog::ShowDirsOnly);
    else
        name = QFileDialog::getOpenFileName(this, title, directory, "All Files (*)");
    QLineEdit* edit = fileFields.value(button->property("labelId").toInt());
    if (!name.isEmpty() && edit) edit->setText(QDir::toNativeSeparators(name.trimmed()));
}

QStringList ZEL_FormDialog::showModal()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* gap = new QSpacerItem(20, 20, QSizePolicy::Minimum, QSizePolicy::Minimum);
    auto* stretch = new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Minimum);
    layout->addSpacerItem(gap);
    layout->addSpacerItem(stretch);
    layout->addWidget(buttons);
    const int result = exec();
    // Taken out again, so that the dialog can be shown once more with one row of buttons.
    layout->removeWidget(buttons);
    delete buttons;
    layout->removeItem(stretch);
    delete stretch;
    layout->removeItem(gap);
    delete gap;
    QStringList data{QString::number(result)};
    data += getData();
    return data;
}

QStringList ZEL_FormDialog::getData() const
{
    QStringList data;
    for (int id : itemOrder) {
        switch (types.value(id)) {
        case comboBox:
            data.append(QString::number(comboBoxes.value(id)->currentIndex() + 1));
            break;
        case checkBox:
            data.append(checkBoxes.value(id)->isChecked() ? "1" : "0");
            break;
        case lineEdit:
            data.append(lineEdits.value(id)->text());
            break;
        case fileField:
            data.append(fileFields.value(id)->text());
            break;
        case radioButtons:
            data.append(QString::number(radioGroups.value(id)->checkedId()));
            break;
        }
    }
    return data;
}

// The window controller's dialog slots.

void WindowController::createDialog(long unit, QMap<QString, QVariant> properties)
{
    ZEL_FormDialog* dialog = getDialogForUnit(unit);
    if (!dialog) {
        dialog = new ZEL_FormDialog(mainWindow);
        // It goes with its parent window; the registry must not keep it then.
        connect(dialog, &QObject::destroyed, this, [this, unit] { dialogs.remove(normalisedUnit(unit)); });
    }
    dialog->setWindowTitle(properties.value(QStringLiteral("windowTitle")).toString());
    addDialogForUnit(unit, dialog);
}

void WindowController::addLabelToDialog(long unit, int labelId, QString text)
{
    if (ZEL_FormDialog* dialog = getDialogForUnit(unit)) dialog->addLabel(labelId, text);
}

void WindowController::addComboBoxToDialog(long unit, int labelId, QMap<QString, QVariant> properties)
{
    if (ZEL_FormDialog* dialog = getDialogForUnit(unit)) dialog->addComboBox(labelId, properties);
}

void WindowController::addRadioButtonsToDialog(long unit, int labelId, QMap<QString, QVariant> properties)
{
    if (ZEL_FormDialog* dialog = getDialogForUnit(unit)) dialog->addRadioButtons(labelId, properties);
}

void WindowController::addCheckBoxToDialog(long unit, int labelId, QString title, bool checked)
{
    if (ZEL_FormDialog* dialog = getDialogForUnit(unit)) dialog->addCheckBox(labelId, title, checked);
}

void WindowController::addLineEditToDialog(long unit, int labelId, QString title, QString placeholder,
                                           QString text)
{
    if (ZEL_FormDialog* dialog = getDialogForUnit(unit))
        dialog->addLineEdit(labelId, title, placeholder, text);
}

void WindowController::addFileDialogToDialog(long unit, int labelId, QMap<QString, QVariant> properties)
{
    if (ZEL_FormDialog* dialog = getDialogForUnit(unit)) dialog->addFileDialog(labelId, properties);
}

void WindowController::showDialogForUnit(long unit)
{
    ZEL_FormDialog* dialog = getDialogForUnit(unit);
    emit endModalDialog(dialog ? dialog->showModal() : QStringList{QStringLiteral("0")});
}

// The program side: which variable each answer goes to.

namespace {

constexpr int textField = 128;

// Shared by the program thread and GUI-thread callbacks, under one lock. Items are kept in order per
// dialog, so that items added after another dialog was created still answer into their own.
struct FormTables
{
    std::mutex mutex;
    QMap<int, QList<int>> labelOrder; // dialog to its value items, in the order of the calls
    QMap<int, int> dialogTypes;
    QMap<int, void*> dialogVariableMap;
};

FormTables& tables()
{
    static FormTables theTables;
    return theTables;
}

bool bridgeUp()
{
    return glue_manager.load(std::memory_order_acquire) != nullptr;
}

// A new item of a known dialog: its id written back and, for a value item, its variable recorded.
// False for an unknown dialog, which gets nothing.
bool recordItem(int* dialog, int* item, int type, void* variable)
{
    if (!dialog || !item) return false;
    FormTables& t = tables();
    std::lock_guard<std::mutex> lock(t.mutex);
    const auto order = t.labelOrder.find(*dialog);
    if (order == t.labelOrder.end()) return false;
    *item = static_cast<int>(currentInternalId++);
    if (type == 0) return true;
    order->append(*item);
    t.dialogTypes.insert(*item, type);
    t.dialogVariableMap.insert(*item, variable);
    return true;
}

// The entries of a block of 128-byte fields; a length of -1 or above the field means up to the
// first NUL within the field.
QStringList itemList(const char* items, const int* count, const int* lengths)
{
    QStringList list;
    const int n = items && count ? std::max(0, *count) : 0;
    for (int i = 0; i < n; ++i) {
        const char* field = items + static_cast<std::ptrdiff_t>(i) * textField;
        int length = lengths ? lengths[i] : -1;
        if (length < 0 || length > textField)
            length = static_cast<int>(std::find(field, field + textField, '\0') - field);
        list.append(QString::fromLatin1(field, length));
    }
    return list;
}

long addChoice(int* dialog, int* item, char* title, char* items, int* itemCount, int* itemLengths,
               int* selected, long titleLength, int type)
{
    if (!recordItem(dialog, item, type, selected)) return -1;
    QMap<QString, QVariant> p;
    p.insert(QStringLiteral("title"), latin1Text(title, titleLength));
    p.insert(QStringLiteral("itemList"), itemList(items, itemCount, itemLengths));
    p.insert(QStringLiteral("selected"), selected ? *selected : 1);
    if (type == ZEL_FormDialog::comboBox)
        GlueManager::callAddComboBoxToDialog(*dialog, *item, p);
    else
        GlueManager::callAddRadioButtonsToDialog(*dialog, *item, p);
    return 1;
}

// Writes an answer into the variable of an item as its type says.
void storeAnswer(int type, void* variable, const QString& value)
{
    if (!variable) return;
    if (type == ZEL_FormDialog::lineEdit || type == ZEL_FormDialog::fileField) {
        QByteArray text = value.leftJustified(textField, ' ', true).toLatin1();
        std::memcpy(variable, text.constData(), textField);
    } else {
        const std::int32_t number = value.toInt();
        std::memcpy(variable, &number, sizeof number);
    }
}

} // namespace

extern "C" {

long ZEL_createDialog(int* dialog, char* title, long titleLength)
{
    if (!dialog) return -1;
    {
        FormTables& t = tables();
        std::lock_guard<std::mutex> lock(t.mutex);
        *dialog = static_cast<int>(currentInternalId++);
        t.labelOrder.insert(*dialog, {});
    }
    QMap<QString, QVariant> p;
    p.insert(QStringLiteral("windowTitle"), latin1Text(title, titleLength));
    return GlueManager::createDialog(*dialog, p) ? 1 : 0;
}

long ZEL_addLabelToDialog(int* dialog, int* item, char* text, long textLength)
{
    if (!recordItem(dialog, item, 0, nullptr)) return -1;
    GlueManager::callAddLabelToDialog(*dialog, *item, latin1Text(text, textLength));
    return 1;
}

long ZEL_addComboBoxToDialog(int* dialog, int* item, char* title, char* items, int* itemCount,
                             int* itemLengths, int* selected, long titleLength)
{
    return addChoice(dialog, item, title, items, itemCount, itemLengths, selected, titleLength,
                     ZEL_FormDialog::comboBox);
}

long ZEL_addRadioButtonsToDialog(int* dialog, int* item, char* title, char* items, int* itemCount,
                                 int* itemLengths, int* selected, long titleLength)
{
    return addChoice(dialog, item, title, items, itemCount, itemLengths, selected, titleLength,
                     ZEL_FormDialog::radioButtons);
}

long ZEL_addCheckBoxToDialog(int* dialog, int* item, char* text, bool* checked, long textLength)
{
    if (!recordItem(dialog, item, ZEL_FormDialog::checkBox, checked)) return -1;
    // A 4-byte logical: its first byte alone says the initial state.
    const bool state = checked && *reinterpret_cast<const unsigned char*>(checked) != 0;
    GlueManager::callAddCheckBoxToDialog(*dialog, *item, latin1Text(text, textLength), state);
    return 1;
}

long ZEL_addLineEditToDialog(int* dialog, int* item, char* label, char* placeholder, char* text, char* result,
                             long labelLength, long placeholderLength, long textLength)
{
    if (!recordItem(dialog, item, ZEL_FormDialog::lineEdit, result)) return -1;
    GlueManager::callAddLineEditToDialog(*dialog, *item, latin1Text(label, labelLength),
                                         latin1Text(placeholder, placeholderLength),
                                         latin1Text(text, textLength));
    return 1;
}

long ZEL_addFileDialogToDialog(int* dialog, int* item, char* title, char* placeholder, char* text,
                               char* defaultDirectory, bool* chooseDirectory, bool* allowNewFiles,
                               char* result, long titleLength, long placeholderLength, long textLength,
                               long directoryLength)
{
    if (!recordItem(dialog, item, ZEL_FormDialog::fileField, result)) return -1;
    QMap<QString, QVariant> p;
    p.insert(QStringLiteral("title"), latin1Text(title, titleLength));
    p.insert(QStringLiteral("placeholder"), latin1Text(placeholder, placeholderLength));
    p.insert(QStringLiteral("text"), latin1Text(text, textLength));
    p.insert(QStringLiteral("defaultDirectory"), latin1Text(defaultDirectory, directoryLength));
    p.insert(QStringLiteral("chooseDirectory"),
             chooseDirectory && *reinterpret_cast<const unsigned char*>(chooseDirectory) != 0);
    p.insert(QStringLiteral("allowNewFiles"),
             allowNewFiles && *reinterpret_cast<const unsigned char*>(allowNewFiles) != 0);
    GlueManager::callAddFileDialogToDialog(*dialog, *item, p);
    return 1;
}

long ZEL_showDialog(int* dialog)
{
    if (!dialog) return -1;
    {
        FormTables& t = tables();
        std::lock_guard<std::mutex> lock(t.mutex);
        if (!t.labelOrder.contains(*dialog)) return -1;
    }
    if (!bridgeUp() || !GlueManager::showDialog(*dialog)) return 0;
    if (const long code = GlueManager::waitCode(GlueManager::Flag::dialog, GlueManager::GuiWait::none);
        code != 1)
        return code;
    const QStringList data = GlueManager::takeDialogResult();
    const long result = data.isEmpty() ? 0 : data.constFirst().toInt();
    if (result == 1) {
        FormTables& t = tables();
        std::lock_guard<std::mutex> lock(t.mutex);
        const QList<int> items = t.labelOrder.value(*dialog);
        for (int k = 1; k < data.size() && k <= items.size(); ++k) {
            const int id = items.at(k - 1);
            storeAnswer(t.dialogTypes.value(id), t.dialogVariableMap.value(id), data.at(k));
        }
    }
    if (!onProgramThread()) QCoreApplication::processEvents();
    return result;
}

} // extern "C"
