// SPDX-License-Identifier: MIT
// A small library for compare_abi_test.sh, which compiles it with one macro at a time.
#pragma once

#include <memory>

class Shape
{
public:
    Shape();
    virtual ~Shape();
    virtual int GetArea() const;
#ifdef MORE_VIRTUAL
    virtual int GetLength() const;
#endif
#ifndef WITHOUT_FUNCTION
    void SetArea(int area);
#endif
#ifdef OTHER_PARAMETER
    void Scale(double factor);
#else
    void Scale(int factor);
#endif
#ifdef MORE_FUNCTIONS
    void Rotate();
#endif

private:
    struct Hidden;
    std::unique_ptr<Hidden> m_hidden;
#ifdef OTHER_SIZE
    char m_name[100];
#endif
#ifdef MORE_MEMBERS
    int m_length;
#endif
};
