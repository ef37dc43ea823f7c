// runtime/messages.cpp: the three message tables of the runtime.
#include "runtime/messages.h"

#include "runtime/iostat.h"

#include <array>
#include <cstring>

namespace kestro::rt {

namespace {

constexpr std::array<std::string_view, 83> ioMessages{
    "File not open for read",                                                   // 10000
    "File not open for write",                                                  // 10001
    "File not found",                                                           // 10002
    "Record length negative or 0",                                              // 10003
    "Buffer allocation failed",                                                 // 10004
    "Bad iolist specifier",                                                     // 10005
    "Error in format string",                                                   // 10006
    "Illegal repeat count",                                                     // 10007
    "Hollerith count exceeds remaining format string",                          // 10008
    "Format string missing opening (",                                          // 10009
    "Format string has unmatched parens",                                       // 10010
    "Format string has unmatched quotes",                                       // 10011
    "Non-repeatable format descriptor",                                         // 10012
    "Attempt to read past end of file",                                         // 10013
    "Bad file specification",                                                   // 10014
    "Format group table overflow",                                              // 10015
    "Illegal character in numeric input",                                       // 10016
    "No record specified for direct access",                                    // 10017
    "Maximum record number exceeded",                                           // 10018
    "Illegal file type for namelist directed I/O",                              // 10019
    "Illegal input for namelist directed I/O",                                  // 10020
    "Variable not present in current namelist",                                 // 10021
    "Variable type or size does not match edit descriptor",                     // 10022
    "Illegal direct access record number",                                      // 10023
    "Illegal use of internal file",                                             // 10024
    "RECL= only valid for direct access files",                                 // 10025
    "BLOCK= only valid for unformatted sequential files",                       // 10026
    "Unable to truncate file after rewind, backspace, or endfile",              // 10027
    "Entire structures can only be read/written with unformatted I/O",          // 10028
    "Unconnected or illegal unit specified",                                    // 10029
    "Specifications in OPEN statement must match currently open file",          // 10030
    "Cannot implicitly open for direct access -- record length unknown",        // 10031
    "Status 'NEW' specified for an existing file",                              // 10032
    "Command not allowed for unit type",                                        // 10033
    "QUOR is required for that feature",                                        // 10034
    "Bad specification for window",                                             // 10035
    "Endian specifier not BIG_ENDIAN or LITTLE_ENDIAN",                         // 10036
    "Cannot ENDIAN convert entire structures",                                  // 10037
    "Attempt to read past end of record",                                       // 10038
    "Attempt to read past end of record in non-advancing I/O",                  // 10039
    "Illegal specifier for ADVANCE=",                                           // 10040
    "Illegal specifier for DELIM=",                                             // 10041
    "Illegal specifier for PAD=",                                               // 10042
    "SIZE= specified with ADVANCE=YES",                                         // 10043
    "EOR= specified with ADVANCE=YES",                                          // 10044
    "Cannot DEALLOCATE disassociated pointer or unallocated array",             // 10045
    "Cannot DEALLOCATE a portion of an original allocation",                    // 10046
    "An allocatable array has already been allocated",                          // 10047
    "Internal or unknown runtime library error",                                // 10048
    "Unknown data type passed to runtime library",                              // 10049
    "Illegal DIM argument to array intrinsic",                                  // 10050
    "Size of SOURCE argument to RESHAPE smaller than SHAPE array",              // 10051
    "SHAPE array for RESHAPE contains a negative value",                        // 10052
    "Unallocated or disassociated array passed to inquiry function",            // 10053
    "The ncopies argument to REPEAT is negative",                               // 10054
    "The S argument to NEAREST is negative",                                    // 10055
    "The ORDER argument to RESHARE is contains an illegal value",               // 10056
    "Result of TRANSFER with no SIZE is smaller than source",                   // 10057
    "SHAPE array for RESHAPE is zero sized array",                              // 10058
    "VECTOR argument to UNPACK contains insufficient values",                   // 10059
    "Attempt to write a record longer than specified record length",            // 10060
    "ADVANCE= specified for direct access or unformatted file",                 // 10061
    "NAMELIST name is longer than specified record length",                     // 10062
    "NAMELIST variable name exceeds maximum length",                            // 10063
    "PAD= specified for unformatted file",                                      // 10064
    "NAMELIST input contains multiple strided arrays",                          // 10065
    "Expected & or $ as first character for NAMELIST input",                    // 10066
    "NAMELIST group does not match current input group",                        // 10067
    "Pointer or allocatable array not associated or allocated",                 // 10068
    "NAMELIST input contains negative array stride",                            // 10069
    "Runtime memory allocation fails",                                          // 10070
    "Illegal rank for matrix argument to MATMUL array instrinsic",              // 10071
    "Matrix arguments to MATMUL array intrinsic are not conformable",           // 10072
    "Non-conformal flag value array or conflicting flag values",                // 10073
    "Control of gradual/abrupt underflow is not supported in this environment", // 10074
    "Infinite loop detected in execution of I/O implied do loop",               // 10075
    "Data tranfer format descriptor was not found during format reversion",     // 10076
    "POS= specifed for file not opened with ACCESS='STREAM'",                   // 10077
    "POS= value must be greater than zero",                                     // 10078
    "Cannot BACKSPACE unformatted file opened with ACCESS='STREAM'",            // 10079
    "DECIMAL= value must be 'COMMA' or 'POINT'",                                // 10080
    "ENCODING= value is unsupported",                                           // 10081
    "SIGN= value must be 'PLUS','SUPPRESS', or 'PROCESSOR_DEFINED'",            // 10082
};

constexpr std::array<std::string_view, 8> runMessages{
    "Unknown Error",
    "No match for select case",
    "Array boundary error",
    "Floating point divide by zero",
    "Floating point underflow",
    "Floating point operand error",
    "Floating point overflow",
    "Unable to increase stack",
};

constexpr std::array<std::string_view, 2> headers{
    "FORTRAN Runtime Error:",
    "System Error:",
};

} // namespace

std::string_view _ioerrmsg(int index)
{
    if (index < 0 || index >= static_cast<int>(ioMessages.size())) return {};
    return ioMessages[static_cast<std::size_t>(index)];
}

std::string_view _runerrmsg(int index)
{
    if (index < 0 || index >= static_cast<int>(runMessages.size())) return runMessages[0];
    return runMessages[static_cast<std::size_t>(index)];
}

std::string_view _msgheader(int index)
{
    return headers[index == 0 ? 0 : 1];
}

std::string messageFor(int code)
{
    if (code >= code::first && code <= code::last) return std::string(_ioerrmsg(code - code::first));
    return std::strerror(code);
}

} // namespace kestro::rt
