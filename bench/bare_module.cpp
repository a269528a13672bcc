extern "C" __attribute__((visibility("default"))) void *NewInterface()
{
    static int nothing = 0;
    return &nothing;
}
