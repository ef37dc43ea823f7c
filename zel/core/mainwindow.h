// zel/core/mainwindow.h: the frame of every window: File and Edit menus, and the Window menu of
// the multiple-document layout. Commands go to the current content.
#pragma once

#include <QMainWindow>
#include <QPrinter>

class QAction;
class QMdiArea;
class QMenu;
class ZEL_ContentController;
class ZEL_TextEdit;

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(QWidget* parent, const QString& title, QMdiArea* mdiArea);

    void setTextEdit(ZEL_TextEdit* textEdit);
    void setNonEditableContentController(ZEL_ContentController* cc);
    void setPrintable(bool printable);
    void hideEditMenu(bool hide);
    void setSaveActive(bool active);
    void setTextEditActive(bool active);
    ZEL_ContentController* getCurrentContentController() const { return currentController; }

    // Paste is offered exactly while typed input is awaited.
    void startRead();
    void endRead();

    QMenu* fileMenu() const { return fileMenu_; }
    QMenu* editMenu() const { return editMenu_; }
    QMenu* windowMenu() const { return windowMenu_; }

signals:
    void willDestroy(ZEL_ContentController* cc);

public slots:
    void save();
    void saveAs();
    void printSetup();
    void print();
    void cut();
    void copy();
    void paste();
    void undo();
    void redo();
    void chooseFont();
    void updateWindowMenu();
    void setActiveSubWindow(QWidget* window);

protected:
    bool event(QEvent* event) override;

private:
    void createActions();
    void createWindowActions();
    void createMenus();
    void disconnectTextEdit();

    QMenu* fileMenu_ = nullptr;
    QMenu* editMenu_ = nullptr;
    QMenu* windowMenu_ = nullptr;
    QAction* saveAct = nullptr;
    QAction* saveAsAct = nullptr;
    QAction* printSetupAct = nullptr;
    QAction* printAct = nullptr;
    QAction* quitAct = nullptr;
    QAction* cutAct = nullptr;
    QAction* copyAct = nullptr;
    QAction* pasteAct = nullptr;
    QAction* undoAct = nullptr;
    QAction* redoAct = nullptr;
    QAction* fontAct = nullptr;
    QAction* closeAct = nullptr;
    QAction* closeAllAct = nullptr;
    QAction* tileAct = nullptr;
    QAction* cascadeAct = nullptr;
    QAction* nextAct = nullptr;
    QAction* previousAct = nullptr;
    QAction* separatorAct = nullptr;
    QMdiArea* mdiArea = nullptr;
    ZEL_ContentController* currentController = nullptr;
    ZEL_TextEdit* connectedTextEdit = nullptr;
    QPrinter printer;
};
