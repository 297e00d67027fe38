set(WINPORT_CORE_SOURCES
  src/core/utf.cpp
)
