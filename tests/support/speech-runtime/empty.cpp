extern "C" const char *SherpaOnnxGetVersionStr()
{
    return "1.99.0";
}
