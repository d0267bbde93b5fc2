// A view that an existing engine draws; OgreEngine.cpp shows what it has to be told.
#include <examples/OgreView/OgreEngine.h>

int main(int argc, char** argv)
{
    return runEngine<OgreEngine>(argc, argv);
}
