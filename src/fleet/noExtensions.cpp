// What the database engine would load extensions with, in a program that needs no library: there is
// none to load, and the C library's own function would look for that of the machine it runs on. The
// linker puts this in its place (--wrap).
extern "C" void* __wrap_dlopen(const char* /*file*/, int /*mode*/) {
  return nullptr;
}
