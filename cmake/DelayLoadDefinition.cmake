# Writes the module definition of an import library's functions. Run as a script with NM, IMPORT_LIBRARY, DEFINITION.
#
# A function has a jump of its own in an import library (type T), data has an entry in the table only.
execute_process(COMMAND "${NM}" --extern-only --defined-only "${IMPORT_LIBRARY}"
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[0-9a-f]+ T [^\r\n]+" functions "${symbols}")
if(NOT functions)
  message(FATAL_ERROR "${IMPORT_LIBRARY}: no functions to delay-load")
endif()
list(TRANSFORM functions REPLACE "^[0-9a-f]+ T " "    ")
list(SORT functions)
list(JOIN functions "\n" lines)
file(WRITE "${DEFINITION}" "EXPORTS\n${lines}\n")
