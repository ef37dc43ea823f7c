// app/notices.cpp: what the checks and the solver have to say about a record, and the panels that say it.
#include "app/notices.h"

#include "runtime/io.h"
#include "support/panels.h"
#include "support/sio.h"

namespace kestro::app {

namespace {

Notice& add(Notice& notice, NoticeLine::Form form, std::string_view text, char letter, float value)
{
    if (notice.lineCount < notice.lines.size()) {
        notice.lines[notice.lineCount++] = {form, letter, static_cast<std::uint16_t>(text.size()),
                                            text.data(), value};
    }
    return notice;
}

void writeLine(const NoticeLine& line)
{
    switch (line.form) {
    case NoticeLine::Form::text:
        rt::write(iocom.SOUT, "(3(1x,a))", line.textView());
        break;
    case NoticeLine::Form::textAndLetter:
        rt::write(iocom.SOUT, "(3(1x,a))", line.textView(), std::string_view(&line.letter, 1));
        break;
    case NoticeLine::Form::value:
        rt::write(iocom.SOUT, "(1x,a,1x,f7.1)", line.textView(), line.value);
        break;
    case NoticeLine::Form::modulo180:
        rt::write(iocom.SOUT, "(1x,a,1x,es10.3,1x,a)", line.textView(), line.value, "[modulo 180]");
        break;
    }
}

} // namespace

Notice& Notice::text(std::string_view text)
{
    return add(*this, NoticeLine::Form::text, text, ' ', 0.0f);
}

Notice& Notice::text(std::string_view text, char letter)
{
    return add(*this, NoticeLine::Form::textAndLetter, text, letter, 0.0f);
}

Notice& Notice::value(std::string_view label, float value)
{
    return add(*this, NoticeLine::Form::value, label, ' ', value);
}

Notice& Notice::modulo180(std::string_view label, float value)
{
    return add(*this, NoticeLine::Form::modulo180, label, ' ', value);
}

Notice& Verdict::warn()
{
    // Beyond the capacity the last panel is reused; the solver never gets there.
    if (noticeCount < notices.size()) ++noticeCount;
    Notice& notice = notices[noticeCount - 1];
    notice.error = false;
    notice.lineCount = 0;
    return notice;
}

Notice& Verdict::refuse(Fracture& fracture, std::string_view comment)
{
    fracture.comment = comment;
    accepted = false;
    Notice& notice = warn();
    notice.error = true;
    return notice;
}

void writeNotices(const Verdict& verdict, std::int32_t readCount)
{
    for (std::uint8_t i = 0; i < verdict.noticeCount; ++i) {
        const Notice& notice = verdict.notices[i];
        if (notice.error)
            errorhead(programName, programVersion, programDate);
        else
            warninghead(programName, programVersion, programDate);
        rt::write(iocom.SOUT, "(1x,a,1x,i5,1x,a)", "while reading data nb", readCount);
        for (std::uint8_t j = 0; j < notice.lineCount; ++j)
            writeLine(notice.lines[j]);
        if (!notice.error) warningtail00();
    }
    if (!verdict.accepted) {
        rt::write(iocom.SOUT, "(3(1x,a))", "===> NO CONVERSION");
        errortail00();
    }
}

} // namespace kestro::app
