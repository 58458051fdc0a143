# Makes the source of the page: cmake -DLIBRARY=FILE -DLICENCE=FILE -DPARTS=DIRECTORY
# -DSCRIPTS=NAMES -DOUT=FILE -P page.cmake
#
# Template, style, chart library and scripts become one text, whose content security policy names
# each of them by its hash; the program puts the data where the template says @DATA@.

# sha256-... as a policy wants it: the digest in base 64.
function(hash_source text out)
  string(SHA256 hex "${text}")
  set(digits ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  set(base64 "")
  string(APPEND hex 00)  # 32 bytes are ten groups of three and two more
  foreach(place RANGE 0 60 6)
    string(SUBSTRING ${hex} ${place} 6 group)
    foreach(shift 18 12 6 0)
      math(EXPR digit "(0x${group} >> ${shift}) & 63")
      string(SUBSTRING ${digits} ${digit} 1 character)
      string(APPEND base64 "${character}")
    endforeach()
  endforeach()
  string(SUBSTRING "${base64}" 0 43 base64)
  set(${out} "'sha256-${base64}='" PARENT_SCOPE)
endfunction()

function(array name text)
  file(WRITE ${OUT}.part "${text}")
  file(READ ${OUT}.part bytes HEX)
  file(REMOVE ${OUT}.part)
  string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
  file(APPEND ${OUT} "constexpr char ${name}Bytes[] = {${bytes}};\n}  // namespace\n"
    "const std::string_view ${name}{${name}Bytes, sizeof ${name}Bytes};\nnamespace {\n")
endfunction()

file(READ ${PARTS}/page.html page)
file(READ ${PARTS}/style.css style)
file(READ ${LIBRARY} library)
file(READ ${LICENCE} licence)
string(REPLACE "&" "&amp;" licence "${licence}")
string(REPLACE "<" "&lt;" licence "${licence}")
set(script "'use strict';\n(() => {\n")
foreach(name ${SCRIPTS})
  file(READ ${PARTS}/${name} part)
  string(APPEND script "${part}")
endforeach()
string(APPEND script "})();\n")

foreach(part style library script)
  string(TOUPPER ${part} place)
  hash_source("${${part}}" hash)
  string(REPLACE "@${place}_HASH@" "${hash}" page "${page}")
endforeach()
foreach(part style licence library script)
  string(TOUPPER ${part} place)
  string(REPLACE "@${place}@" "${${part}}" page "${page}")
endforeach()

string(FIND "${page}" "@DATA@" place)
string(SUBSTRING "${page}" 0 ${place} start)
math(EXPR place "${place} + 6")
string(SUBSTRING "${page}" ${place} -1 end)
file(WRITE ${OUT} "#include \"page.h\"\nnamespace vantrel::inspect {\nnamespace {\n")
array(kPageStart "${start}")
array(kPageEnd "${end}")
file(APPEND ${OUT} "}  // namespace\n}  // namespace vantrel::inspect\n")
