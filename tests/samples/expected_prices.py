#!/usr/bin/env python3
# An independent computation of the sample market's prices, without splits. Prints the first and the last row of a security
# (day, open, close, in ten-thousandths). The figures in SampleMarketTest.cpp are its output.
import datetime as D
M=(1<<64)-1
def easter(y):
    a=y%19;b=y//100;c=y%100;d=b//4;e=b%4;f=(b+8)//25;g=(b-f+1)//3;h=(19*a+b-d-g+15)%30;i=c//4;k=c%4;l=(32+2*e+2*i-h-k)%7;m=(a+11*h+22*l)//451;n=h+l-7*m+114
    return D.date(y,n//31,n%31+1)
def trading(d):
    if d.weekday()>=5 or (d.month,d.day) in ((1,1),(1,26),(4,25),(12,25),(12,26)): return False
    e=easter(d.year); return d not in (e-D.timedelta(2), e+D.timedelta(1))
def tdiv(a,b):
    q=abs(a)//abs(b); return q if (a<0)==(b<0) else -q
class S:
    def __init__(s,t):
        s.s=14695981039346656037
        for c in t.encode(): s.s=((s.s^c)*1099511628211)&M
    def next(s):
        s.s=(s.s+0x9E3779B97F4A7C15)&M; z=s.s
        z=((z^(z>>30))*0xBF58476D1CE4E5B9)&M; z=((z^(z>>27))*0x94D049BB133111EB)&M
        return z^(z>>31)
    def below(s,n): return s.next()%n
    def around(s,n): return tdiv(sum(s.below(2*n+1)-n for _ in range(4))*866,1000)
def tick(p):
    st=50 if p<20000 else 100
    return max(tdiv(p+st//2,st)*st,st)
def run(code,cents,drift,vol,today,y0=2001):
    r=S(code); v=cents*100; d=D.date(y0,1,2); out=[]
    while d<today:
        if trading(d):
            ch=drift+r.around(vol)
            op=tick(tdiv(v*(1000000+tdiv(ch,3)),1000000))
            v=max(tdiv(v*(1000000+ch),1000000),500)
            cl=tick(v); spread=tdiv(v*r.below(vol),2000000); r.below(4000000)
            out.append((d,op,cl,spread))
        d+=D.timedelta(1)
    return out
rows = run("ABC.AX", 820, 260, 11000, D.date(2026, 3, 3))
print(rows[0][:3], rows[-1][:3])
