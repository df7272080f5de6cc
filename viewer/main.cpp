#include "viewer/ViewerApplication.h"

int main(int argc, char *argv[])
{
    return runViewer(argc, argv);
}
