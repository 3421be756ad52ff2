# SQLite for Windows, compiled from the distribution's source package; see tools/sqlite_source.sh.
if(TARGET SQLite::SQLite3)
  return()
endif()
set(source "${PROJECT_SOURCE_DIR}/build/windows/sqlite")
execute_process(COMMAND "${PROJECT_SOURCE_DIR}/tools/sqlite_source.sh" "${source}" RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "SQLite's source package cannot be fetched or prepared; what was tried stands above.")
endif()
add_library(sqlite3 STATIC "${source}/sqlite3.c")
target_include_directories(sqlite3 SYSTEM PUBLIC "${source}")
# The distribution's own choices, as far as they show in what the engine does.
target_compile_definitions(sqlite3 PRIVATE
  SQLITE_THREADSAFE=1 SQLITE_SECURE_DELETE SQLITE_USE_URI SQLITE_LIKE_DOESNT_MATCH_BLOBS SQLITE_MAX_VARIABLE_NUMBER=250000
  SQLITE_ENABLE_MATH_FUNCTIONS SQLITE_ENABLE_COLUMN_METADATA SQLITE_OMIT_LOAD_EXTENSION)
target_compile_options(sqlite3 PRIVATE -w)
add_library(SQLite::SQLite3 ALIAS sqlite3)
set(SQLite3_FOUND TRUE)
