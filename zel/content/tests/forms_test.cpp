// zel/content/tests/forms_test.cpp: form dialogs filled in by the test through their widgets, and
// the answers found byte for byte in the program's variables.
#include "content_fixture.h"

#include "zel/content/forms.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include <cstdint>
#include <cstring>
#include <thread>

namespace zeltest {
namespace {

// A 128-byte text variable as the expected answer: the text, then blanks.
std::string padded(const std::string& text)
{
    return text + std::string(128 - text.size(), ' ');
}

std::string bytes(const void* variable, std::size_t n)
{
    return std::string(static_cast<const char*>(variable), n);
}

void pressButton(QDialog* dialog, QDialogButtonBox::StandardButton which)
{
    dialog->findChild<QDialogButtonBox*>()->button(which)->click();
}

// The program's variables, read by the test once the program has published them.
struct Variables
{
    std::int32_t combo = 2, radio = 0, check = 0x100; // first byte 0: opens unchecked
    char line[128], file[128];
};
Variables vars, afterOk;
std::atomic<bool> secondGo{false};
std::string dataDirectory;

void formProgram()
{
    int dialog = 0, item = 0, three = 3, lengths[] = {-1, 4, 200};
    char items[3][128] = {"north", "eastern", "south"};
    std::memset(vars.line, '#', 128);
    std::memset(vars.file, '#', 128);
    bool no = false;
    ZEL_createDialog(&dialog, const_cast<char*>("Survey"), -1);
    ZEL_addLabelToDialog(&dialog, &item, const_cast<char*>("Fill in"), -1);
    ZEL_addComboBoxToDialog(&dialog, &item, const_cast<char*>("Side"), items[0], &three, lengths, &vars.combo,
                            -1);
    ZEL_addRadioButtonsToDialog(&dialog, &item, const_cast<char*>("Dip"), items[0], &three, nullptr,
                                &vars.radio, -1);
    ZEL_addCheckBoxToDialog(&dialog, &item, const_cast<char*>("Overturned"),
                            reinterpret_cast<bool*>(&vars.check), -1);
    ZEL_addLineEditToDialog(&dialog, &item, const_cast<char*>("Site"), const_cast<char*>("name"),
                            const_cast<char*>("abc"), vars.line, -1, -1, -1);
    ZEL_addFileDialogToDialog(&dialog, &item, const_cast<char*>("Data"), const_cast<char*>("file"),
                              const_cast<char*>(""), dataDirectory.data(), &no, &no, vars.file, -1, -1, -1,
                              -1);
    const long result = ZEL_showDialog(&dialog);
    afterOk = vars;
    programLog.add(result);
    while (!secondGo)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    programLog.add(ZEL_showDialog(&dialog));
    ZEL_startEvents();
}

using Forms = ContentDesktop;

TEST_F(Forms, OkAnswersGoIntoTheVariablesCancelLeavesThemAndACallbackShowsADialogAtOnce)
{
    QTemporaryDir dir;
    dataDirectory = dir.path().toStdString();
    const QString dataFile = dir.filePath("site.dat");
    QFile(dataFile).open(QIODevice::WriteOnly);
    QStringList seen;
    {
        // The "..." button asks for an existing file in the default folder.
        DialogAnswerer files([&](QWidget* modal) {
            auto* chooser = qobject_cast<QFileDialog*>(modal);
            if (!chooser) return;
            seen << chooser->windowTitle() << QFileInfo(chooser->directory().path()).canonicalFilePath();
            seen << QString::number(chooser->fileMode() == QFileDialog::ExistingFile);
            chooser->selectFile(dataFile);
            QMetaObject::invokeMethod(chooser, "accept");
        });
        DialogAnswerer form([&](QWidget* modal) {
            auto* dialog = qobject_cast<ZEL_FormDialog*>(modal);
            if (!dialog) return;
            auto* combo = dialog->findChild<QComboBox*>();
            seen << dialog->windowTitle() << combo->itemText(1) << combo->itemText(2)
                 << QString::number(combo->currentIndex());
            const auto radios = dialog->findChildren<QRadioButton*>();
            seen << QString::number(radios.size()) << QString::number(radios.at(0)->isChecked());
            seen << QString::number(dialog->findChild<QCheckBox*>()->isChecked());
            combo->setCurrentIndex(2);
            radios.at(1)->click();
            dialog->findChild<QCheckBox*>()->click();
            dialog->findChildren<QLineEdit*>().at(0)->setText(QString::fromUtf8("Zürich"));
            dialog->findChild<QToolButton*>()->click();
            pressButton(dialog, QDialogButtonBox::Ok);
        });
        start(formProgram);
        ASSERT_TRUE(waitForProgram(1));
    }
    EXPECT_EQ(seen, (QStringList{"Survey", "east", "south", "1", "3", "0", "0", "Data",
                                 QFileInfo(dir.path()).canonicalFilePath(), "1"}));
    EXPECT_EQ(programLog.at(0), 1);
    EXPECT_EQ(afterOk.combo, 3);
    EXPECT_EQ(afterOk.radio, 2);
    EXPECT_EQ(bytes(&afterOk.check, 4), std::string("\1\0\0\0", 4));
    EXPECT_EQ(bytes(afterOk.line, 128), padded("Z\xFCrich"));
    EXPECT_EQ(bytes(afterOk.file, 128), padded(dataFile.toStdString()));

    {
        // Shown again, changed, and cancelled: every variable stays as it was.
        DialogAnswerer cancel([&](QWidget* modal) {
            auto* dialog = qobject_cast<ZEL_FormDialog*>(modal);
            if (!dialog) return;
            dialog->findChild<QComboBox*>()->setCurrentIndex(0);
            dialog->findChild<QCheckBox*>()->click();
            dialog->findChildren<QLineEdit*>().at(0)->setText("changed");
            pressButton(dialog, QDialogButtonBox::Cancel);
        });
        secondGo = true;
        ASSERT_TRUE(waitForProgram(2));
    }
    EXPECT_EQ(programLog.at(1), 0);
    EXPECT_EQ(bytes(&vars, sizeof vars), bytes(&afterOk, sizeof afterOk));

    // From a callback, with the program idle: two dialogs made before their items, the items still
    // answering into their own variables.
    ASSERT_TRUE(waitUntil([] { return start_events_called.load(); }));
    int first = 0, second = 0, item = 0, three = 3;
    char items[3][128] = {"a", "b", "c"};
    std::int32_t none = 0, above = 7, combo = 2;
    char line[128];
    ZEL_createDialog(&first, const_cast<char*>("First"), -1);
    ZEL_createDialog(&second, const_cast<char*>("Second"), -1);
    ZEL_addRadioButtonsToDialog(&first, &item, nullptr, items[0], &three, nullptr, &none, 0);
    ZEL_addComboBoxToDialog(&second, &item, nullptr, items[0], &three, nullptr, &combo, 0);
    ZEL_addRadioButtonsToDialog(&first, &item, nullptr, items[0], &three, nullptr, &above, 0);
    ZEL_addLineEditToDialog(&first, &item, nullptr, nullptr, const_cast<char*>("abc"), line, 0, 0, -1);
    DialogAnswerer ok([](QWidget* modal) {
        if (auto* dialog = qobject_cast<ZEL_FormDialog*>(modal)) pressButton(dialog, QDialogButtonBox::Ok);
    });
    EXPECT_EQ(ZEL_showDialog(&first), 1);
    EXPECT_EQ(none, -1) << "no button was checked";
    EXPECT_EQ(above, 1) << "a choice above the count opens on the first";
    EXPECT_EQ(bytes(line, 128), padded("abc"));
    EXPECT_EQ(ZEL_showDialog(&second), 1);
    EXPECT_EQ(combo, 2) << "the second entry, unchanged";

    int unknown = 12345;
    EXPECT_EQ(ZEL_addLabelToDialog(&unknown, &item, const_cast<char*>("lost"), -1), -1);
    EXPECT_EQ(ZEL_addCheckBoxToDialog(&first, nullptr, nullptr, nullptr, 0), -1);
    EXPECT_EQ(ZEL_showDialog(&unknown), -1);
    EXPECT_EQ(ZEL_showDialog(nullptr), -1);
}

} // namespace
} // namespace zeltest
