# Writes the fixed parts of the page as a source: the template, with style and script in it and with the hashes by which
# browsers know that these and nothing else are to be taken.
#   cmake -DFOLDER=... -DSTYLES=a.css;... -DSCRIPTS=a.js;... -DSOURCE=... -P makePage.cmake
cmake_minimum_required(VERSION 3.22)

# What browsers call sha256 is in base64.
function(hash_of text result)
  set(digits ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  string(SHA256 hash "${text}")
  # 33 bytes are 11 times three; the last one is filled up.
  string(APPEND hash 00)
  set(written "")
  foreach(at RANGE 0 60 6)
    string(SUBSTRING ${hash} ${at} 6 three)
    math(EXPR number "0x${three}")
    foreach(shift 18 12 6 0)
      math(EXPR place "(${number} >> ${shift}) & 63")
      string(SUBSTRING ${digits} ${place} 1 digit)
      string(APPEND written ${digit})
    endforeach()
  endforeach()
  string(REGEX REPLACE ".$" "=" written ${written})
  set(${result} ${written} PARENT_SCOPE)
endfunction()

# A text as a literal of the source.
function(literal_of text result)
  if(text MATCHES "\\)page\"")
    message(FATAL_ERROR "The page has what ends its literals")
  endif()
  set(${result} "    R\"page(${text})page\",\n" PARENT_SCOPE)
endfunction()

function(read_files files text_result literals_result)
  set(whole "")
  set(literals "")
  foreach(file ${files})
    file(READ ${FOLDER}/${file} text)
    string(APPEND whole "${text}")
    literal_of("${text}" literal)
    string(APPEND literals "${literal}")
  endforeach()
  set(${text_result} "${whole}" PARENT_SCOPE)
  set(${literals_result} "${literals}" PARENT_SCOPE)
endfunction()

read_files("${STYLES}" style style_literals)
read_files("${SCRIPTS}" script script_literals)
hash_of("${style}" STYLE_HASH)
hash_of("${script}" SCRIPT_HASH)

# The template, cut where something comes in.
file(READ ${FOLDER}/page.html page)
string(REPLACE @STYLE_HASH@ "${STYLE_HASH}" page "${page}")
string(REPLACE @SCRIPT_HASH@ "${SCRIPT_HASH}" page "${page}")
set(parts "")
foreach(name STYLE CALLS SCRIPT)
  set(mark @${name}@)
  string(FIND "${page}" ${mark} at)
  if(at EQUAL -1)
    message(FATAL_ERROR "The template lacks ${mark}")
  endif()
  string(SUBSTRING "${page}" 0 ${at} part)
  literal_of("${part}" before_${name})
  string(LENGTH ${mark} length)
  math(EXPR behind "${at} + ${length}")
  string(SUBSTRING "${page}" ${behind} -1 page)
endforeach()
literal_of("${page}" end)

file(WRITE ${SOURCE} "#include \"page/pageParts.h\"

namespace tool {
namespace {

constexpr std::string_view kBegin[] = {
${before_STYLE}${style_literals}${before_CALLS}};

constexpr std::string_view kEnd[] = {
${before_SCRIPT}${script_literals}${end}};

}  // namespace

std::span<const std::string_view> pageBegin() { return kBegin; }

std::span<const std::string_view> pageEnd() { return kEnd; }

}  // namespace tool
")
