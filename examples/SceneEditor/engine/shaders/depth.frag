void main()
{
}
