#include "app/SnapvaneApp.h"

int main(int argc, char* argv[]) {
    return snapvane::SnapvaneApp::run(argc, argv);
}
