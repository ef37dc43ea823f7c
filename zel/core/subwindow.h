// zel/core/subwindow.h: the frame of a content in the multiple-document layout. Closing it tells
// the world that the content goes, and ends a read that waits on it.
#pragma once

#include <QMdiSubWindow>

class ZEL_ContentController;

class SubWindow : public QMdiSubWindow
{
    Q_OBJECT

public:
    explicit SubWindow(QWidget* parent = nullptr) : QMdiSubWindow(parent) {}

    ZEL_ContentController* controller = nullptr;

signals:
    void willDestroy(ZEL_ContentController* cc);

protected:
    void closeEvent(QCloseEvent* event) override;
};
