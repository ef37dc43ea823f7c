// zel/core/textedit.cpp: the text window, at once the program's terminal and its line editor.
#include "zel/core/textedit.h"

#include "zel/core/preferences.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextStream>

namespace {

QFont defaultFont()
{
    char family[30];
    _ZEL_defaultFontFamily(family, sizeof family);
    QFont font(QString::fromLatin1(family, sizeof family).trimmed(), _ZEL_defaultFontSize(), -1, false);
    // Panels line up where the family is missing.
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    return font;
}

} // namespace

ZEL_TextEdit::ZEL_TextEdit(QWidget* parent, long unit, const QString& name, const QString& access)
    : QPlainTextEdit(parent), ZEL_ContentController(unit, name, access)
{
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setUndoRedoEnabled(false);
    QFont font = defaultFont();
    QPlainTextEdit::setFont(font);
    installEventFilter(this);
    outputEnd = QTextCursor(document());
}

QTextCursor& ZEL_TextEdit::openOutput()
{
    if (!outputOpen) {
        // Inside the edit the cursor skips the layout that placing it would cost.
        outputEnd.beginEditBlock();
        outputEnd.setPosition(document()->characterCount() - 1);
        outputOpen = true;
    }
    return outputEnd;
}

void ZEL_TextEdit::appendText(const QString& text)
{
    openOutput().insertText(text);
}

void ZEL_TextEdit::endOutput()
{
    if (!outputOpen) return;
    outputOpen = false;
    outputEnd.endEditBlock();
    // To the last page first, with the viewport's updates off: with them on, a scroll measures
    // its distance by laying out up to two pages of blocks below the old top, which nobody sees.
    QScrollBar* bar = verticalScrollBar();
    viewport()->setUpdatesEnabled(false);
    bar->setValue(bar->maximum());
    viewport()->setUpdatesEnabled(true);
    QTextCursor caret = textCursor();
    caret.movePosition(QTextCursor::End);
    setTextCursor(caret);
}

void ZEL_TextEdit::writeProgramText(const QString& text)
{
    QString rest = text;
    for (int at = rest.indexOf(QChar('\b')); at >= 0; at = rest.indexOf(QChar('\b'))) {
        if (at > 0) appendText(rest.left(at));
        openOutput().deletePreviousChar();
        rest.remove(0, at + 1);
    }
    for (int at = rest.indexOf(QChar('\a')); at >= 0; at = rest.indexOf(QChar('\a'))) {
        if (at > 0) appendText(rest.left(at));
        QApplication::beep();
        rest.remove(0, at + 1);
    }
    if (!rest.isEmpty()) appendText(rest);
}

void ZEL_TextEdit::startRead()
{
    endOutput();
    readStart = textCursor().position();
    setUndoRedoEnabled(true);
}

bool ZEL_TextEdit::eventFilter(QObject* object, QEvent* event)
{
    if (object != this || event->type() != QEvent::KeyPress)
        return QPlainTextEdit::eventFilter(object, event);
    endOutput();
    const auto* key = static_cast<QKeyEvent*>(event);
    if (readStart < 0) return key->modifiers() == Qt::NoModifier; // eaten unless modified
    if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter) return false;

    QTextCursor selection = textCursor();
    selection.setPosition(readStart, QTextCursor::KeepAnchor);
    readStart = -1;
    setUndoRedoEnabled(false);
    emit endRead(selection.selectedText());
    return false; // the editor still puts the line end into the document
}

bool ZEL_TextEdit::canInsertFromMimeData(const QMimeData*) const
{
    return readStart >= 0;
}

void ZEL_TextEdit::insertFromMimeData(const QMimeData* source)
{
    if (!canInsertFromMimeData(source)) return;
    endOutput();
    QTextCursor cursor = textCursor();
    if (cursor.position() < readStart) {
        cursor.movePosition(QTextCursor::End);
        setTextCursor(cursor);
    }
    textCursor().insertText(source->text());
}

bool ZEL_TextEdit::willClose()
{
    endOutput();
    if (_ZEL_promptSaveOnExit() && document()->isModified()) return saveAs();
    if (!_ZEL_autoSave()) return true;
    save(QString());
    return true;
}

void ZEL_TextEdit::save(QString fileName)
{
    endOutput(); // the document counts as modified once the edit is closed
    if (!document()->isModified()) return;
    if (fileName.isEmpty()) fileName = windowName + " output";
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream out(&file); // the locale's encoding, as an editor opening the file expects
        out << toPlainText();
        file.close();
    }
    document()->setModified(false);
}

bool ZEL_TextEdit::saveAs()
{
    QFileDialog dialog(this, "Save " + windowName + " As", QDir::currentPath(), "All Files (*.*)");
    dialog.selectFile(windowName + " output");
    dialog.setDefaultSuffix("txt");
    dialog.setModal(true);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    if (dialog.exec() != QDialog::Accepted) return false;
    const QStringList files = dialog.selectedFiles();
    if (files.isEmpty()) return false;
    save(files.first());
    return true;
}

void ZEL_TextEdit::print(QPrinter& printer)
{
    endOutput();
    printer.setColorMode(QPrinter::Color);
    printer.setOutputFormat(QPrinter::NativeFormat);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(tr("Print Document"));
    if (textCursor().hasSelection()) dialog.addEnabledOption(QAbstractPrintDialog::PrintSelection);
    if (dialog.exec() == QDialog::Accepted) QPlainTextEdit::print(&printer);
}
