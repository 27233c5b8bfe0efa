// A shared library that is no COM server.
extern "C" int runtimeTestAnswer() { return 42; }
