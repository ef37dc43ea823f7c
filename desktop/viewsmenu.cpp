// desktop/viewsmenu.cpp: the "Views" menu: a results file asked for, its view opened beside the
// running program through the environment's C functions, called from a thread of its own (they wait
// for the GUI thread, which must not be blocked).
#include "desktop/viewsmenu.h"

#include "desktop/viewswindows.h"
#include "views/readers.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QThread>
#include <QTimer>

namespace kestro::desktop {

namespace {

enum class View { stereonet, rose, table };

QMainWindow* findMainWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<QMainWindow*>(widget)) return window;
    return nullptr;
}

void openView(QMainWindow* window, View view)
{
    QFileDialog dialog(window, QStringLiteral("Open Results File"), QDir::currentPath(),
                       QStringLiteral("Results files (*.txt *.csv);;All files (*)"));
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.selectFile(QStringLiteral("kestro_out.txt"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    const QString fileName = dialog.selectedFiles().front();

    views::ReadResult read = views::readPlanes(fileName.toStdString());
    if (!read.ok()) {
        QStringList problems;
        for (std::size_t i = 0; i < read.problems.size() && i < 10; ++i)
            problems << QString::fromStdString(read.problems[i]);
        QMessageBox::warning(window, QStringLiteral("Views"), problems.join('\n'));
        if (read.planes.empty()) return;
    }
    const std::string name = QFileInfo(fileName).fileName().toStdString();
    auto records = std::make_shared<std::vector<views::PlaneRecord>>(std::move(read.planes));
    QThread* opener = QThread::create([records, view, name] {
        switch (view) {
        case View::stereonet:
            openStereonetWindow(*records, "Stereonet - " + name);
            break;
        case View::rose:
            openRoseWindow(*records, "Rose diagram - " + name);
            break;
        case View::table:
            openTableWindow(*records, views::UncertaintyOptions{}, "Table - " + name);
            break;
        }
    });
    QObject::connect(opener, &QThread::finished, opener, &QObject::deleteLater);
    opener->start();
}

void addMenu(int attemptsLeft)
{
    QMainWindow* window = findMainWindow();
    if (!window) {
        if (attemptsLeft > 0) QTimer::singleShot(100, qApp, [attemptsLeft] { addMenu(attemptsLeft - 1); });
        return;
    }
    QMenu* menu = window->menuBar()->addMenu(QStringLiteral("Views"));
    menu->setObjectName(QStringLiteral("viewsMenu"));
    const struct
    {
        const char* text;
        View view;
    } items[] = {{"Stereonet", View::stereonet}, {"Rose diagram", View::rose}, {"Table", View::table}};
    for (const auto& item : items) {
        const View view = item.view;
        QObject::connect(menu->addAction(QString::fromLatin1(item.text)), &QAction::triggered, window,
                         [window, view] { openView(window, view); });
    }
}

} // namespace

void installViewsMenu()
{
    if (!qApp) return;
    QMetaObject::invokeMethod(
        qApp, [] { addMenu(50); }, Qt::QueuedConnection);
}

} // namespace kestro::desktop
