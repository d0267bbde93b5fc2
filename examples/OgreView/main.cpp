// A view drawn by an existing engine; OgreEngine.cpp shows what the engine needs to know.
#include <examples/OgreView/OgreEngine.h>

int main(int argc, char** argv)
{
    return runEngine<OgreEngine>(argc, argv);
}
