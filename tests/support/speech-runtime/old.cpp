extern "C" const char *SherpaOnnxGetVersionStr()
{
    return "1.12.34";
}
