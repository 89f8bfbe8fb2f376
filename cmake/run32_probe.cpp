// The probe of cmake/run32.sh: exits with 32 when started as a 32-bit program. The odd status keeps
// a shell that reads an unstartable file as a script from passing for it.
int main() {
  return sizeof(void*) == 4 ? 32 : 1;
}
