// The program that owns the precompiled headers; executables can only share those of another one.
int main() {}
