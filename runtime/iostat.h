// runtime/iostat.h: how an I/O statement left, and the runtime's numbered error codes.
#pragma once

namespace kestro::rt {

// What a statement's caller branches on. `end` is only returned to a statement that handles the
// end of file itself; `error` carries the code.
enum class Outcome { ok, end, error };

struct Iostat
{
    Outcome outcome = Outcome::ok;
    int code = 0; // 0; -1 at end of file; else the error code (10000-10082 or a system errno)

    constexpr operator Outcome() const { return outcome; } // so a caller can switch on it
    constexpr bool ok() const { return outcome == Outcome::ok; }
};

// Codes 10000 to 10082 index the message table (messages.cpp); all others are errno values.
namespace code {
inline constexpr int first = 10000;
inline constexpr int fileNotOpenForRead = 10000;
inline constexpr int fileNotOpenForWrite = 10001;
inline constexpr int fileNotFound = 10002;
inline constexpr int badRecordLength = 10003;
inline constexpr int bufferAllocation = 10004;
inline constexpr int badIolist = 10005;
inline constexpr int badFormat = 10006;
inline constexpr int badRepeatCount = 10007;
inline constexpr int hollerithTooLong = 10008;
inline constexpr int badFormatStart = 10009;
inline constexpr int unmatchedParens = 10010;
inline constexpr int unmatchedQuotes = 10011;
inline constexpr int notRepeatable = 10012;
inline constexpr int endOfFile = 10013;
inline constexpr int badFileSpec = 10014;
inline constexpr int groupOverflow = 10015;
inline constexpr int badNumericInput = 10016;
inline constexpr int noDirectRecord = 10017;
inline constexpr int recordNumberTooLarge = 10018;
inline constexpr int badNamelistFile = 10019;
inline constexpr int badNamelistInput = 10020;
inline constexpr int notInNamelist = 10021;
inline constexpr int typeMismatch = 10022;
inline constexpr int badDirectRecord = 10023;
inline constexpr int badInternalUse = 10024;
inline constexpr int reclNotDirect = 10025;
inline constexpr int blockNotUnformatted = 10026;
inline constexpr int cannotTruncate = 10027;
inline constexpr int structureNeedsUnformatted = 10028;
inline constexpr int badUnit = 10029;
inline constexpr int openMismatch = 10030;
inline constexpr int implicitDirect = 10031;
inline constexpr int newFileExists = 10032;
inline constexpr int notForUnitType = 10033;
inline constexpr int windowsUnavailable = 10034;
inline constexpr int badWindowSpec = 10035;
inline constexpr int badEndian = 10036;
inline constexpr int endianStructure = 10037;
inline constexpr int endOfRecord = 10038;
inline constexpr int endOfRecordNonAdvancing = 10039;
inline constexpr int badAdvance = 10040;
inline constexpr int badDelim = 10041;
inline constexpr int badPad = 10042;
inline constexpr int sizeWithAdvance = 10043;
inline constexpr int eorWithAdvance = 10044;
inline constexpr int internalError = 10048;
inline constexpr int unknownDataType = 10049;
inline constexpr int recordTooLong = 10060;
inline constexpr int advanceNotAllowed = 10061;
inline constexpr int padUnformatted = 10064;
inline constexpr int allocationFailed = 10070;
inline constexpr int noDataEditInReversion = 10076;
inline constexpr int posNotStream = 10077;
inline constexpr int badPos = 10078;
inline constexpr int backspaceStream = 10079;
inline constexpr int badDecimal = 10080;
inline constexpr int badEncoding = 10081;
inline constexpr int badSign = 10082;
inline constexpr int last = 10082;
} // namespace code

// The status variable's value for a code: -1 at end of file, -2 at end of a non-advancing record.
constexpr int statusFor(int errorCode)
{
    if (errorCode == code::endOfFile) return -1;
    if (errorCode == code::endOfRecordNonAdvancing) return -2;
    return errorCode;
}

} // namespace kestro::rt
