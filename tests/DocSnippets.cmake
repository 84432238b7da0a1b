# Turns every ```cpp block of the given Markdown documents into a source file
# of the object library `target`, so that building it checks that the
# examples compile. A block with an #include or a main() is a whole program;
# any other is a fragment of the library's own code and is compiled inside
# namespace PQ_UTILS, after the umbrella header and a pqSourceFile of its own.
function(pqutils_doc_snippets target)
  string(CONCAT preamble "#include \"PQUtils/PQUtils.h\"\n#include \"PQUtils/Utils/PQFailure.h\"\n\n"
                "static constexpr const char* pqSourceFile = \"doc\";\n\n")
  set(sources "")
  foreach(doc IN LISTS ARGN)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${doc})
    file(READ ${doc} text)
    # CMake lists split at ";", which C++ is full of.
    string(REPLACE ";" "@PQ_SEMICOLON@" text "${text}")
    string(REGEX MATCHALL "```cpp\n[^`]*```" blocks "${text}")
    get_filename_component(stem ${doc} NAME_WE)
    set(index 0)
    foreach(block IN LISTS blocks)
      string(REGEX REPLACE "^```cpp\n" "" code "${block}")
      string(REGEX REPLACE "[ ]*```$" "" code "${code}")
      string(REPLACE "@PQ_SEMICOLON@" ";" code "${code}")
      if(code MATCHES "#include|int main")
        set(content "${code}")
      else()
        set(content "${preamble}namespace PQ_UTILS {\n${code}} // namespace PQ_UTILS\n")
      endif()
      math(EXPR index "${index} + 1")
      set(source ${CMAKE_CURRENT_BINARY_DIR}/doc_snippets/${stem}_${index}.cpp)
      file(CONFIGURE OUTPUT ${source} CONTENT "${content}" @ONLY)
      list(APPEND sources ${source})
    endforeach()
    if(index EQUAL 0)
      message(FATAL_ERROR "${doc}: no ```cpp block to check")
    endif()
  endforeach()
  add_library(${target} OBJECT EXCLUDE_FROM_ALL ${sources})
  target_link_libraries(${target} PRIVATE PQUtils::PQUtils)
  # An example may leave a result unused; any other warning is a fault.
  pqutils_apply_build_flags(${target})
  target_compile_options(${target} PRIVATE -Wno-unused-variable -Wno-unused-but-set-variable)
endfunction()
