# One interface target carries every compiler flag of the project.
add_library(zentrill_flags INTERFACE)
target_compile_features(zentrill_flags INTERFACE cxx_std_20)
# A designated initializer leaves out what keeps its default: that is no slip.
target_compile_options(
  zentrill_flags
  INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wsign-conversion
    -Wold-style-cast
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wcast-qual
    -Wformat=2
    -Wimplicit-fallthrough
    -Wno-missing-field-initializers
    -fstack-protector-strong
)
# Every file API is 64 bits wide, on 32-bit systems as well.
target_compile_definitions(zentrill_flags INTERFACE _FILE_OFFSET_BITS=64)
if(NOT APPLE)
  target_compile_definitions(zentrill_flags INTERFACE _GNU_SOURCE)
endif()

if(ZENTRILL_SANITIZER STREQUAL "address")
  set(zentrill_sanitizer_flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(ZENTRILL_SANITIZER STREQUAL "thread")
  set(zentrill_sanitizer_flags -fsanitize=thread -fno-omit-frame-pointer)
elseif(NOT ZENTRILL_SANITIZER STREQUAL "")
  message(FATAL_ERROR "ZENTRILL_SANITIZER is \"${ZENTRILL_SANITIZER}\"; it takes address, thread or nothing")
endif()
if(ZENTRILL_SANITIZER)
  # Globally, so that the test framework is instrumented along with the code it runs.
  add_compile_options(${zentrill_sanitizer_flags})
  add_link_options(${zentrill_sanitizer_flags})
endif()

# For folders that use Qt: its implicit conversions and keywords stay off.
add_library(zentrill_qt_flags INTERFACE)
target_compile_definitions(
  zentrill_qt_flags
  INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_KEYWORDS
    QT_NO_FOREACH
    QT_USE_QSTRINGBUILDER
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_JAVA_STYLE_ITERATORS
    QT_STRICT_QLIST_ITERATORS
    # The newest version of which the headers of the oldest tell what it gives up.
    QT_DISABLE_DEPRECATED_BEFORE=0x060800
)
