#include "Kelps2pdf.h"

int main(int argc, char** argv) {
    return kelps2pdf::runKelps2pdf(argc, argv);
}
