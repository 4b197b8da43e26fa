#include <QtTest/QTest>
int main() { return 0; }
