// zel/core/mainwindow.cpp: the frame of every window: its File, Edit and Window menus.
#include "zel/core/mainwindow.h"

#include "zel/content/contentcontroller.h"
#include "zel/core/textedit.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QFontDialog>
#include <QFontInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPageSetupDialog>
#include <QPointer>

MainWindow::MainWindow(QWidget* parent, const QString& title, QMdiArea* mdiArea)
    : QMainWindow(parent), mdiArea(mdiArea)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setUnifiedTitleAndToolBarOnMac(true);
    createActions();
    createMenus();
    for (QAction* action : {cutAct, copyAct, pasteAct, undoAct, redoAct, printAct, printSetupAct})
        action->setEnabled(false);
    setWindowTitle(title);

    if (mdiArea) {
        mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
        mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
        createWindowActions();
        windowMenu_ = menuBar()->addMenu(tr("&Window"));
        updateWindowMenu();
        connect(windowMenu_, &QMenu::aboutToShow, this, &MainWindow::updateWindowMenu);
    }
}

namespace {
QAction* makeAction(QObject* parent, const QString& label, const QString& tip)
{
    auto* action = new QAction(label, parent);
    action->setStatusTip(tip);
    return action;
}
} // namespace

void MainWindow::createActions()
{
    saveAct = makeAction(this, tr("&Save"), tr("Saves output to file"));
    saveAct->setShortcuts(QKeySequence::Save);
    connect(saveAct, &QAction::triggered, this, &MainWindow::save);

    saveAsAct = makeAction(this, tr("Save &As"), tr("Prompt for file name and saves output to file"));
    saveAsAct->setShortcuts(QKeySequence::SaveAs);
    connect(saveAsAct, &QAction::triggered, this, &MainWindow::saveAs);

    printSetupAct = makeAction(this, tr("P&rint Setup"), tr("Displays printer setup dialog"));
    connect(printSetupAct, &QAction::triggered, this, &MainWindow::printSetup);

    printAct = makeAction(this, tr("&Print"), tr("Prints output"));
    printAct->setShortcuts(QKeySequence::Print);
    connect(printAct, &QAction::triggered, this, &MainWindow::print);

    quitAct = makeAction(this, tr("&Quit"), tr("Close all windows and exit"));
    quitAct->setShortcuts(QKeySequence::Quit);
    connect(quitAct, &QAction::triggered, qApp, &QApplication::closeAllWindows);

    cutAct = makeAction(this, tr("C&ut"), tr("Cut the current selection's contents to the clipboard"));
    cutAct->setShortcuts(QKeySequence::Cut);
    connect(cutAct, &QAction::triggered, this, &MainWindow::cut);

    copyAct = makeAction(this, tr("&Copy"), tr("Copy the current selection's contents to the clipboard"));
    copyAct->setShortcuts(QKeySequence::Copy);
    connect(copyAct, &QAction::triggered, this, &MainWindow::copy);

    pasteAct =
        makeAction(this, tr("&Paste"), tr("Paste the clipboard's contents into the current selection"));
    pasteAct->setShortcuts(QKeySequence::Paste);
    connect(pasteAct, &QAction::triggered, this, &MainWindow::paste);

    undoAct = makeAction(this, tr("&Undo"), tr("Undo last event"));
    undoAct->setShortcuts(QKeySequence::Undo);
    connect(undoAct, &QAction::triggered, this, &MainWindow::undo);

    redoAct = makeAction(this, tr("&Redo"), tr("Redo last event"));
    redoAct->setShortcuts(QKeySequence::Redo);
    connect(redoAct, &QAction::triggered, this, &MainWindow::redo);

    fontAct = makeAction(this, tr("&Font"), tr("Select the current font through the font dialog"));
    connect(fontAct, &QAction::triggered, this, &MainWindow::chooseFont);
}

void MainWindow::createWindowActions()
{
    closeAct = makeAction(this, tr("Cl&ose"), tr("Close the active window"));
    closeAct->setShortcut(QKeySequence(tr("Ctrl+F4")));
    connect(closeAct, &QAction::triggered, mdiArea, &QMdiArea::closeActiveSubWindow);

    closeAllAct = makeAction(this, tr("Close &All"), tr("Close all the windows"));
    connect(closeAllAct, &QAction::triggered, mdiArea, &QMdiArea::closeAllSubWindows);

    tileAct = makeAction(this, tr("&Tile"), tr("Tile the windows"));
    connect(tileAct, &QAction::triggered, mdiArea, &QMdiArea::tileSubWindows);

    cascadeAct = makeAction(this, tr("&Cascade"), tr("Cascade the windows"));
    connect(cascadeAct, &QAction::triggered, mdiArea, &QMdiArea::cascadeSubWindows);

    nextAct = makeAction(this, tr("Ne&xt"), tr("Move the focus to the next window"));
    nextAct->setShortcuts(QKeySequence::NextChild);
    connect(nextAct, &QAction::triggered, mdiArea, &QMdiArea::activateNextSubWindow);

    previousAct = makeAction(this, tr("Pre&vious"), tr("Move the focus to the previous window"));
    previousAct->setShortcuts(QKeySequence::PreviousChild);
    connect(previousAct, &QAction::triggered, mdiArea, &QMdiArea::activatePreviousSubWindow);

    separatorAct = new QAction(this);
    separatorAct->setSeparator(true);
}

void MainWindow::createMenus()
{
    fileMenu_ = menuBar()->addMenu(tr("&File"));
    fileMenu_->addAction(saveAct);
    fileMenu_->addAction(saveAsAct);
    fileMenu_->addSeparator();
    fileMenu_->addAction(printSetupAct);
    fileMenu_->addAction(printAct);
    fileMenu_->addAction(quitAct);

    editMenu_ = menuBar()->addMenu(tr("&Edit"));
    editMenu_->addAction(cutAct);
    editMenu_->addAction(copyAct);
    editMenu_->addAction(pasteAct);
    editMenu_->addSeparator();
    editMenu_->addAction(undoAct);
    editMenu_->addAction(redoAct);
    editMenu_->addSeparator();
    editMenu_->addAction(fontAct);
}

void MainWindow::disconnectTextEdit()
{
    if (!connectedTextEdit) return;
    disconnect(connectedTextEdit, nullptr, cutAct, nullptr);
    disconnect(connectedTextEdit, nullptr, copyAct, nullptr);
    disconnect(connectedTextEdit, nullptr, undoAct, nullptr);
    disconnect(connectedTextEdit, nullptr, redoAct, nullptr);
    connectedTextEdit = nullptr;
}

void MainWindow::setTextEdit(ZEL_TextEdit* textEdit)
{
    disconnectTextEdit();
    const bool present = textEdit != nullptr;
    if (present) {
        connect(textEdit, &QPlainTextEdit::copyAvailable, cutAct, &QAction::setEnabled);
        connect(textEdit, &QPlainTextEdit::copyAvailable, copyAct, &QAction::setEnabled);
        connect(textEdit, &QPlainTextEdit::undoAvailable, undoAct, &QAction::setEnabled);
        connect(textEdit, &QPlainTextEdit::redoAvailable, redoAct, &QAction::setEnabled);
        connectedTextEdit = textEdit;
    }
    for (QAction* action : {cutAct, copyAct, pasteAct, undoAct, redoAct})
        action->setVisible(present);
    for (QAction* action : {printAct, printSetupAct, saveAct, saveAsAct})
        action->setEnabled(present);
    currentController = textEdit;
}

void MainWindow::setNonEditableContentController(ZEL_ContentController* cc)
{
    disconnectTextEdit();
    saveAct->setEnabled(true);
    saveAsAct->setEnabled(true);
    for (QAction* action : {cutAct, copyAct, pasteAct, undoAct, redoAct})
        action->setVisible(false);
    currentController = cc;
    printAct->setEnabled(true);
    printSetupAct->setEnabled(true);
}

void MainWindow::setPrintable(bool printable)
{
    printAct->setEnabled(printable);
    printSetupAct->setEnabled(printable);
}

void MainWindow::hideEditMenu(bool hide)
{
    editMenu_->setEnabled(!hide);
}

void MainWindow::setSaveActive(bool active)
{
    saveAct->setEnabled(active);
    saveAsAct->setEnabled(active);
}

void MainWindow::setTextEditActive(bool active)
{
    for (QAction* action : {cutAct, copyAct, pasteAct, undoAct, redoAct})
        action->setVisible(active);
}

void MainWindow::startRead()
{
    pasteAct->setEnabled(true);
}
void MainWindow::endRead()
{
    pasteAct->setEnabled(false);
}

void MainWindow::save()
{
    if (currentController) currentController->save(QString());
}

void MainWindow::saveAs()
{
    if (currentController) currentController->saveAs();
}

void MainWindow::printSetup()
{
    QPageSetupDialog dialog(&printer, this);
    dialog.exec();
}

void MainWindow::print()
{
    if (currentController) currentController->print(printer);
}

void MainWindow::cut()
{
    if (currentController) currentController->cut();
}

void MainWindow::copy()
{
    if (currentController) currentController->copy();
}

void MainWindow::paste()
{
    if (currentController) currentController->paste();
}

void MainWindow::undo()
{
    if (currentController) currentController->undo();
}

void MainWindow::redo()
{
    if (currentController) currentController->redo();
}

void MainWindow::chooseFont()
{
    if (!currentController) return;
    // From the face on the screen: where the family asked for is missing, that is a fallback, and
    // starting from the request would make OK without a change turn the window proportional.
    const QFont requested = currentController->font();
    const QFontInfo shown(requested);
    QFont start(shown.family(), shown.pointSize(), shown.weight(), shown.italic());
    start.setStyleHint(requested.styleHint());
    start.setFixedPitch(shown.fixedPitch());
    QFont font = QFontDialog::getFont(nullptr, start);
    currentController->setFont(font);
}

void MainWindow::updateWindowMenu()
{
    if (!windowMenu_) return;
    windowMenu_->clear();
    windowMenu_->addAction(closeAct);
    windowMenu_->addAction(closeAllAct);
    windowMenu_->addSeparator();
    windowMenu_->addAction(tileAct);
    windowMenu_->addAction(cascadeAct);
    windowMenu_->addSeparator();
    windowMenu_->addAction(nextAct);
    windowMenu_->addAction(previousAct);
    windowMenu_->addAction(separatorAct);

    const QList<QMdiSubWindow*> windows = mdiArea->subWindowList(QMdiArea::CreationOrder);
    separatorAct->setVisible(!windows.isEmpty());
    for (QMdiSubWindow* window : windows) {
        if (!window->isVisible()) break;
        QAction* action = windowMenu_->addAction(window->windowTitle());
        action->setCheckable(true);
        action->setChecked(window == mdiArea->activeSubWindow());
        connect(action, &QAction::triggered, this,
                [this, target = QPointer<QMdiSubWindow>(window)] { setActiveSubWindow(target); });
    }
}

void MainWindow::setActiveSubWindow(QWidget* window)
{
    if (!window) return;
    mdiArea->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(window));
}

bool MainWindow::event(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) raise();
    if (event->type() == QEvent::Close) {
        if (!mdiArea) {
            if (ZEL_ContentController* cc = currentController) {
                emit willDestroy(cc);
                cc->willClose();
            }
        } else if (auto* area = qobject_cast<QMdiArea*>(centralWidget())) {
            area->closeAllSubWindows();
        }
    }
    return QMainWindow::event(event);
}
