// zel/core/subwindow.cpp: the frame of a content in the multiple-document layout.
#include "zel/core/subwindow.h"

#include "zel/content/contentcontroller.h"
#include "zel/core/gluemanager.h"

#include <QCloseEvent>

void SubWindow::closeEvent(QCloseEvent* event)
{
    if (controller) {
        GlueManager* bridge = glue_manager.load(std::memory_order_acquire);
        if (bridge && GlueManager::readIsPendingFor(controller->unit)) bridge->cancelRead();
        emit willDestroy(controller);
        controller->willClose();
    }
    controller = nullptr;
    // Not handed on: the accepted event hides the sub-window, which stays in the area until the
    // controller deletes it.
    event->accept();
}
