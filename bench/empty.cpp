// What the start and the end of a process cost.
int main() {}
