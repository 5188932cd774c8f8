#include "NavorinRadioApp.h"

int main(int argc, char *argv[])
{
    return navorin::NavorinRadioApp::run(argc, argv);
}
