# The tool's sources without its main.cpp, for the tool itself and for
# programs that drive its commands directly (the fuzz target of encode).
#
# Each item gets an adapter once its codec exists in the library tree, so the
# tool builds with whatever items this checkout has. One row per adapter:
# adapter name (items/<name>.cpp) and the library header that shows the codec
# is there, and optionally an adapter source that several items share.
#
# Sets PIMTLV_TOOL_CORE_SOURCES and PIMTLV_TOOL_DEFINES.
set(PIMTLV_TOOL_ITEMS
    "event|pimshared/calendar/TLVCalendarParser.h|CalendarFamily"
    "task|pimshared/task/TLVTaskParser.h|CalendarFamily"
    "note|pimshared/note/TLVNoteParser.h|CalendarFamily"
    "contact|pimshared/contact/TLVContactParser.h"
    "email|pimshared/email/TLVEmailParser.h"
    "im|pimshared/im/TLVIMParser.h"
    "sms|pimshared/sms/TLVSMSParser.h"
    "calllist|pimshared/callstack/TLVCallstackParser.h")

set(PIMTLV_TOOL_CORE_SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/Input.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Stream.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Dump.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Commands.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Json.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Items.cpp)
set(PIMTLV_TOOL_DEFINES "")
foreach(row ${PIMTLV_TOOL_ITEMS})
  string(REPLACE "|" ";" fields "${row}")
  list(GET fields 0 item)
  list(GET fields 1 header)
  set(adapter ${CMAKE_CURRENT_LIST_DIR}/items/${item}.cpp)
  if(EXISTS ${adapter} AND EXISTS ${PROJECT_SOURCE_DIR}/${header})
    list(APPEND PIMTLV_TOOL_CORE_SOURCES ${adapter})
    list(LENGTH fields count)
    if(count GREATER 2)
      list(GET fields 2 shared)
      list(APPEND PIMTLV_TOOL_CORE_SOURCES ${CMAKE_CURRENT_LIST_DIR}/items/${shared}.cpp)
    endif()
    string(TOUPPER ${item} upper)
    list(APPEND PIMTLV_TOOL_DEFINES PIMTLV_TOOL_ITEM_${upper})
  endif()
endforeach()
list(REMOVE_DUPLICATES PIMTLV_TOOL_CORE_SOURCES)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/items)
