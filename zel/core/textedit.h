// zel/core/textedit.h: the text window, at once the program's terminal and its line editor.
//
// Keys without modifiers are refused except while a read waits. A read takes what stands between
// the point where it began and the caret when the user presses Return.
#pragma once

#include "zel/content/contentcontroller.h"

#include <QPlainTextEdit>
#include <QTextCursor>

class ZEL_TextEdit : public QPlainTextEdit, public ZEL_ContentController
{
    Q_OBJECT

public:
    ZEL_TextEdit(QWidget* parent, long unit, const QString& name, const QString& access);

    // Adds program output at the end. Output that arrives together is one edit of the document,
    // opened by the first piece and closed by endOutput(); layout, scroll bars and caret wait for it.
    void appendText(const QString& text);
    // Output with the terminal's two control characters: backspace and bell.
    void writeProgramText(const QString& text);
    // Closes the open output edit, if any: the caret goes to the end and the view follows it.
    void endOutput();
    void startRead();
    bool isReading() const { return readStart >= 0; }

    bool willClose() override;
    void save(QString fileName) override;
    bool saveAs() override;
    void print(QPrinter& printer) override;
    void cut() override { QPlainTextEdit::cut(); }
    void copy() override { QPlainTextEdit::copy(); }
    void paste() override { QPlainTextEdit::paste(); }
    void undo() override { QPlainTextEdit::undo(); }
    void redo() override { QPlainTextEdit::redo(); }
    void setFont(QFont& font) override { QPlainTextEdit::setFont(font); }
    QFont font() override { return QPlainTextEdit::font(); }

signals:
    // Return pressed during a read: what stands between the read's start and the caret.
    void endRead(const QString& text);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    QTextCursor& openOutput();

    int readStart = -1;
    QTextCursor outputEnd; // at the end of the document while an output edit is open
    bool outputOpen = false;
};
