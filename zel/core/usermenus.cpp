// zel/core/usermenus.cpp: the program's own menus with their callbacks, alert boxes and file
// requests.
#include "zel/core/gluemanager.h"
#include "zel/core/mainwindow.h"
#include "zel/core/textedit.h"
#include "zel/core/windowcontroller.h"
#include "zel/core/zel.h"

#include <QAction>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

#include <algorithm>
#include <cstring>

void WindowController::addMenuItem(long unit, QString menu_name, QString item_name, void* callback,
                                   QString item_shortcut)
{
    MainWindow* window = nullptr;
    if (mdiMode) {
        window = mainWindow;
    } else if (ZEL_TextEdit* textEdit = getTextEditForUnit(unit)) {
        window = qobject_cast<MainWindow*>(textEdit->window());
    }
    if (!window) {
        reportError(QString("Unit number %1 has not been opened yet.\nZEL_addMenu failed.").arg(unit));
        return;
    }

    QMenu* menu = nullptr;
    for (const QPointer<QMenu>& candidate : userMenus) {
        if (candidate && candidate->title() == menu_name) {
            menu = candidate;
            break;
        }
    }
    if (!menu) {
        menu = window->menuBar()->addMenu(menu_name);
        userMenus.append(menu);
    }

    const QString key =
        mdiMode ? menu_name + item_name : QString::number(normalisedUnit(unit)) + menu_name + item_name;
    menuCallbacks.insert(key, reinterpret_cast<long (*)()>(callback));

    QAction* action = menu->addAction(item_name);
    action->setShortcut(QKeySequence(item_shortcut));
    connect(action, &QAction::triggered, this, [this, action] { menuItemActivated(action); });
    menu->menuAction()->setVisible(false);
}

void WindowController::addMenuItem(QString menu_name, QString item_name, void* callback,
                                   QString item_shortcut)
{
    addMenuItem(-2, menu_name, item_name, callback, item_shortcut);
}

QAction* WindowController::getUserAction(long, const QString& menu_name, const QString& item_name) const
{
    for (const QPointer<QMenu>& menu : userMenus) {
        if (!menu || menu->title() != menu_name) continue;
        for (QAction* action : menu->actions())
            if (action->text() == item_name) return action;
    }
    return nullptr;
}

void WindowController::enableMenuItem(long unit, QString menu_name, QString item_name, bool state)
{
    if (QAction* action = getUserAction(unit, menu_name, item_name))
        action->setEnabled(state);
    else
        reportError(QString("Unit number %1 has not been opened yet.\nZEL_menuItemEnable failed.").arg(unit));
}

void WindowController::setMenuItemCheckable(long unit, QString menu_name, QString item_name, bool state)
{
    if (QAction* action = getUserAction(unit, menu_name, item_name))
        action->setCheckable(state);
    else
        reportError(
            QString("Unit number %1 has not been opened yet.\nZEL_setMenuItemCheckable failed.").arg(unit));
}

void WindowController::setMenuItemChecked(long unit, QString menu_name, QString item_name, bool state)
{
    if (QAction* action = getUserAction(unit, menu_name, item_name))
        action->setChecked(state);
    else
        reportError(
            QString("Unit number %1 has not been opened yet.\nZEL_setMenuItemChecked failed.").arg(unit));
}

bool WindowController::isMenuItemChecked(long unit, const QString& menu_name, const QString& item_name) const
{
    const QAction* action = getUserAction(unit, menu_name, item_name);
    return action && action->isChecked();
}

void WindowController::menuItemActivated(QAction* action)
{
    QWidget* menu = action->parentWidget();
    MainWindow* window = menu && menu->parentWidget()
                             ? qobject_cast<MainWindow*>(menu->parentWidget()->parentWidget())
                             : nullptr;
    ZEL_ContentController* cc = window ? window->getCurrentContentController() : nullptr;
    const QString menuTitle = menu ? static_cast<QMenu*>(menu)->title() : QString();

    QString key;
    if (!mdiMode) {
        if (!cc) return;
        key = QString::number(cc->unit) + menuTitle + action->text();
    } else {
        key = menuTitle + action->text();
    }
    long (*callback)() = menuCallbacks.value(key, nullptr);
    if (inMenuCallback) return;
    if (!callback) {
        if (cc)
            reportError(QString("The callback for unit number %1 cannot be found").arg(cc->unit));
        else
            reportError("The callback for this menu item cannot be found");
        return;
    }
    inMenuCallback = true;
    for (const QPointer<QMenu>& user : userMenus)
        if (user) user->menuAction()->setEnabled(false);
    callback();
    for (const QPointer<QMenu>& user : userMenus)
        if (user) user->menuAction()->setEnabled(true);
    inMenuCallback = false;
}

void WindowController::showAlertBox(QString title, QString text)
{
    if (mainWindow) {
        mainWindow->show();
        mainWindow->raise();
        mainWindow->activateWindow();
    }
    QMessageBox box(mainWindow);
    box.setWindowTitle(title);
    box.setText(text);
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
    emit endAlertDialog();
}

void WindowController::getFileName(long, bool newFile)
{
    QFileDialog dialog(nullptr, newFile ? "Open New File" : "Open Existing File");
    dialog.setModal(true);
    dialog.setAcceptMode(newFile ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(newFile ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    QString name;
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        name = dialog.selectedFiles().first();
    emit gotFileName(name);
}

namespace {

} // namespace

extern "C" {

long ZEL_addMenu(int* unit, char* menu, char* item, long (*callback)(), char* shortcut, int menuLength,
                 int itemLength, int shortcutLength)
{
    if (!unit || !menu || !item || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::addMenuItem(*unit, latin1Text(menu, menuLength), latin1Text(item, itemLength), callback,
                             latin1Text(shortcut, shortcutLength));
    return 0;
}

long ZEL_menuItemEnable(int* unit, char* menu, char* item, bool* state, int menuLength, long itemLength)
{
    if (!unit || !state || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::menuItemEnable(*unit, latin1Text(menu, menuLength), latin1Text(item, itemLength), *state);
    return 0;
}

long ZEL_setMenuItemCheckable(int* unit, char* menu, char* item, bool* state, int menuLength, long itemLength)
{
    if (!unit || !state || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::setMenuItemCheckable(*unit, latin1Text(menu, menuLength), latin1Text(item, itemLength),
                                      *state);
    return 0;
}

long ZEL_setMenuItemChecked(int* unit, char* menu, char* item, bool* state, int menuLength, long itemLength)
{
    if (!unit || !state || !glue_manager.load(std::memory_order_acquire)) return 0;
    GlueManager::setMenuItemChecked(*unit, latin1Text(menu, menuLength), latin1Text(item, itemLength),
                                    *state);
    return 0;
}

long ZEL_isMenuItemChecked(int* unit, char* menu, char* item, int menuLength, long itemLength)
{
    if (!unit || !glue_manager.load(std::memory_order_acquire)) return 0;
    return GlueManager::isMenuItemChecked(*unit, latin1Text(menu, menuLength), latin1Text(item, itemLength))
               ? 1
               : 0;
}

long ZEL_alertBox(char* title, char* message, int titleLength, long messageLength)
{
    if (!glue_manager.load(std::memory_order_acquire)) return 1;
    if (!GlueManager::showAlertBox(latin1Text(title, titleLength), latin1Text(message, messageLength)))
        return 1;
    switch (GlueManager::waitFor(GlueManager::Flag::alert, GlueManager::GuiWait::none)) {
    case GlueManager::Wait::threadFinished:
        return -2;
    default:
        return 1;
    }
}

long ZEL_getFileName(char* buffer, long* length, long* unit, bool* newFile)
{
    if (!length || !unit) return -1;
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    const long key = *unit;
    const bool fresh = newFile && *newFile;
    if (!GlueManager::callWaiting(GlueManager::Flag::fileName,
                                  [=](GlueManager& g) { emit g.getFileNameFromWindow(key, fresh); }))
        return 0;
    if (const long code =
            GlueManager::waitCode(GlueManager::Flag::fileName, GlueManager::GuiWait::processEvents);
        code != 1)
        return code;
    const QByteArray name = GlueManager::takeFileNameResult().toLatin1();
    std::strncpy(buffer, name.constData(), static_cast<std::size_t>(std::max(0L, *length)));
    return std::min<long>(*length, name.size());
}

} // extern "C"
