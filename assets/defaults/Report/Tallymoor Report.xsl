<?xml version="1.0" encoding="UTF-8"?>
<!--
  Turns a report of Tallymoor into a page that reads well on the screen and prints on A4.

  "version" below counts the releases of this file, in whole numbers; the language is XSLT 1.0 whatever it says.
  The page is made by the program as soon as the report is. A stylesheet gets at nothing but the report: it can
  neither include another one nor read or write a file. The mark in the variable "directory" is replaced by the
  folder of the reports.

  Every figure stands twice in a report: "x" in a fixed form to compare and compute with, "xShown" as it is read.
-->
<xsl:stylesheet version="2" xmlns:xsl="http://www.w3.org/1999/XSL/Transform" xmlns="http://www.w3.org/1999/xhtml">
  <xsl:output method="xml" encoding="UTF-8" omit-xml-declaration="yes" indent="no"
    doctype-public="-//W3C//DTD XHTML 1.0 Strict//EN"
    doctype-system="http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd"/>

  <xsl:variable name="directory">$REPORTDIR$</xsl:variable>

  <!-- The page -->

  <xsl:template match="/Report">
    <html>
      <head>
        <title><xsl:value-of select="@title"/>: <xsl:call-template name="period"/></title>
        <style type="text/css"><xsl:call-template name="css"/></style>
      </head>
      <body>
        <div class="head">
          <h1><xsl:value-of select="@title"/></h1>
          <p class="period"><xsl:call-template name="period"/></p>
          <p class="names">
            <xsl:for-each select="PortfolioReport">
              <xsl:if test="position() &gt; 1"><xsl:text>, </xsl:text></xsl:if>
              <xsl:value-of select="@name"/>
            </xsl:for-each>
          </p>
        </div>
        <xsl:apply-templates select="TotalReport"/>
        <xsl:apply-templates select="PortfolioReport"/>
        <p class="foot">
          Made by Tallymoor on <xsl:value-of select="@madeShown"/>. Costs and values of holdings are without
          brokerage. The figures lie beside this page in <xsl:value-of select="$directory"/>.
        </p>
      </body>
    </html>
  </xsl:template>

  <xsl:template name="period">
    <xsl:value-of select="/Report/@fromShown"/> to <xsl:value-of select="/Report/@toShown"/>
  </xsl:template>

  <xsl:template match="TotalReport">
    <div class="portfolio first">
      <h2><xsl:value-of select="@name"/></h2>
      <xsl:apply-templates select="Note"/>
      <table>
        <thead>
          <tr>
            <th class="t">Portfolio</th><th>Capital at start</th><th>Paid in or out</th><th>Capital at end</th>
            <th>Gain</th><th>Gain %</th><th>Net profit of sales</th><th>Dividends</th><th>Franking credits</th>
            <th>Interest</th>
          </tr>
        </thead>
        <tbody>
          <xsl:apply-templates select="../PortfolioReport" mode="summary"/>
        </tbody>
        <tbody class="totals">
          <xsl:apply-templates select="." mode="summary"/>
        </tbody>
      </table>
      <xsl:apply-templates select="Chart"/>
      <table>
        <thead>
          <tr>
            <th>Shares at the end</th>
            <th>Cash at the end</th>
            <th>Gross gain of the shares held</th>
            <th>Brokerage of the sales</th>
            <th>Dividends paid out</th>
            <th>Dividends reinvested</th>
            <th>Tax withheld abroad</th>
            <th>Deposits</th>
            <th>Withdrawals</th>
          </tr>
        </thead>
        <tbody>
          <tr>
            <xsl:apply-templates select="PerformanceReport/@sharesEndShown" mode="figure"/>
            <xsl:apply-templates select="PerformanceReport/@cashEndShown" mode="figure"/>
            <xsl:apply-templates select="SharesHeldAt/SharesHeldAtTotals/@grossGainShown" mode="figure"/>
            <xsl:apply-templates select="SalesReport/@brokerageShown" mode="figure"/>
            <xsl:apply-templates select="DividendsReport/@paidOutShown" mode="figure"/>
            <xsl:apply-templates select="DividendsReport/@reinvestedShown" mode="figure"/>
            <xsl:apply-templates select="DividendsReport/@withholdingTaxShown" mode="figure"/>
            <xsl:apply-templates select="CashFlowsReport/@depositsShown" mode="figure"/>
            <xsl:apply-templates select="CashFlowsReport/@withdrawalsShown" mode="figure"/>
          </tr>
        </tbody>
      </table>
    </div>
  </xsl:template>

  <xsl:template match="PortfolioReport | TotalReport" mode="summary">
    <tr>
      <td class="t"><xsl:value-of select="@name"/></td>
      <xsl:apply-templates select="PerformanceReport/@capitalStartShown" mode="figure"/>
      <xsl:apply-templates select="PerformanceReport/@externalFlowShown" mode="figure"/>
      <xsl:apply-templates select="PerformanceReport/@capitalEndShown" mode="figure"/>
      <xsl:apply-templates select="PerformanceReport/@gainShown" mode="figure"/>
      <xsl:apply-templates select="PerformanceReport/@gainPercentShown" mode="figure"/>
      <xsl:apply-templates select="SalesReport/@netProfitShown" mode="figure"/>
      <xsl:apply-templates select="DividendsReport/@valueShown" mode="figure"/>
      <xsl:apply-templates select="DividendsReport/@frankingCreditShown" mode="figure"/>
      <xsl:apply-templates select="InterestsReport/@amountShown" mode="figure"/>
    </tr>
  </xsl:template>

  <xsl:template match="PortfolioReport">
    <div>
      <xsl:attribute name="class">
        <xsl:text>portfolio</xsl:text>
        <xsl:if test="position() = 1 and not(../TotalReport)"> first</xsl:if>
      </xsl:attribute>
      <h2><xsl:value-of select="@name"/></h2>
      <xsl:apply-templates select="Note"/>
      <xsl:apply-templates select="PerformanceReport"/>
      <xsl:apply-templates select="Chart"/>
      <xsl:apply-templates select="SharesHeldAt"/>
      <xsl:apply-templates select="SalesReport"/>
      <xsl:apply-templates select="DividendsReport"/>
      <xsl:apply-templates select="InterestsReport"/>
      <xsl:apply-templates select="CashFlowsReport"/>
    </div>
  </xsl:template>

  <xsl:template match="Note">
    <p class="note"><xsl:value-of select="."/></p>
  </xsl:template>

  <!-- The program draws the chart and escapes its texts. -->
  <xsl:template match="Chart">
    <div class="chart"><xsl:value-of select="." disable-output-escaping="yes"/></div>
  </xsl:template>

  <!-- Sections -->

  <xsl:template match="PerformanceReport">
    <h3>Performance</h3>
    <table>
      <thead>
        <tr>
          <th>Capital on <xsl:value-of select="@startShown"/></th>
          <th>Paid in or out</th>
          <th>Capital on <xsl:value-of select="@endShown"/></th>
          <th>Of it shares</th>
          <th>Of it cash</th>
          <th>Gain</th>
          <th>Gain %</th>
          <xsl:if test="@index != ''"><th>Index <xsl:value-of select="@index"/></th></xsl:if>
        </tr>
      </thead>
      <tbody>
        <tr>
          <xsl:apply-templates select="@capitalStartShown" mode="figure"/>
          <xsl:apply-templates select="@externalFlowShown" mode="figure"/>
          <xsl:apply-templates select="@capitalEndShown" mode="figure"/>
          <xsl:apply-templates select="@sharesEndShown" mode="figure"/>
          <xsl:apply-templates select="@cashEndShown" mode="figure"/>
          <xsl:apply-templates select="@gainShown" mode="figure"/>
          <xsl:apply-templates select="@gainPercentShown" mode="figure"/>
          <xsl:if test="@index != ''"><xsl:apply-templates select="@indexGainPercentShown" mode="figure"/></xsl:if>
        </tr>
      </tbody>
    </table>
  </xsl:template>

  <xsl:template match="SharesHeldAt">
    <h3>Shares held on <xsl:value-of select="@dateShown"/></h3>
    <xsl:if test="not(ShareHeldAt)"><p>No shares were held.</p></xsl:if>
    <xsl:if test="ShareHeldAt">
      <table>
        <thead>
          <tr>
            <th class="t">Code</th><th>Number</th><th>Buy price</th><th>Price</th><th>Purchase value</th>
            <th>Value</th><th>Gross gain</th><th>Gain %</th><th>Portfolio %</th><th>Days held</th>
          </tr>
        </thead>
        <tbody>
          <xsl:for-each select="ShareHeldAt">
            <tr>
              <xsl:call-template name="stock"/>
              <xsl:apply-templates select="@number" mode="figure"/>
              <xsl:apply-templates select="@buyPriceShown" mode="figure"/>
              <xsl:apply-templates select="@priceShown" mode="figure"/>
              <xsl:apply-templates select="@purchaseValueShown" mode="figure"/>
              <xsl:apply-templates select="@valueShown" mode="figure"/>
              <xsl:apply-templates select="@grossGainShown" mode="figure"/>
              <xsl:apply-templates select="@gainPercentShown" mode="figure"/>
              <xsl:apply-templates select="@portfolioPercentShown" mode="figure"/>
              <xsl:apply-templates select="@daysHeld" mode="figure"/>
            </tr>
            <xsl:if test="@comment != ''">
              <tr class="comment"><td class="t" colspan="10"><xsl:value-of select="@comment"/></td></tr>
            </xsl:if>
          </xsl:for-each>
        </tbody>
        <tbody class="totals">
          <tr>
            <td class="t">Totals</td><td/><td/><td/>
            <xsl:apply-templates select="SharesHeldAtTotals/@purchaseValueShown" mode="figure"/>
            <xsl:apply-templates select="SharesHeldAtTotals/@valueShown" mode="figure"/>
            <xsl:apply-templates select="SharesHeldAtTotals/@grossGainShown" mode="figure"/>
            <td/>
            <xsl:apply-templates select="SharesHeldAtTotals/@portfolioPercentShown" mode="figure"/>
            <td/>
          </tr>
        </tbody>
      </table>
    </xsl:if>
  </xsl:template>

  <xsl:template name="stock">
    <td class="t">
      <xsl:value-of select="@code"/>
      <xsl:if test="@name != ''"><span class="name"><xsl:value-of select="@name"/></span></xsl:if>
    </td>
  </xsl:template>

  <xsl:template match="SalesReport">
    <h3>Shares sold</h3>
    <xsl:if test="not(SaleReport)"><p>No shares were sold.</p></xsl:if>
    <xsl:if test="SaleReport">
      <table>
        <thead>
          <tr>
            <th class="t">Code</th><th>Bought</th><th>Sold</th><th>Days held</th><th>Number</th><th>Buy price</th>
            <th>Sell price</th><th>Cost</th><th>Proceeds</th><th>Gross profit</th><th>Brokerage</th>
            <th>Net profit</th><th>Net gain</th>
          </tr>
        </thead>
        <tbody>
          <xsl:apply-templates select="SaleReport"/>
        </tbody>
        <tbody class="totals">
          <tr>
            <td class="t">Totals</td><td/><td/><td/><td/><td/><td/>
            <xsl:apply-templates select="@grossCostShown" mode="figure"/>
            <xsl:apply-templates select="@grossSaleShown" mode="figure"/>
            <xsl:apply-templates select="@grossProfitShown" mode="figure"/>
            <xsl:apply-templates select="@brokerageShown" mode="figure"/>
            <xsl:apply-templates select="@netProfitShown" mode="figure"/>
            <td/>
          </tr>
        </tbody>
      </table>
    </xsl:if>
  </xsl:template>

  <xsl:template match="SaleReport">
    <tr>
      <xsl:call-template name="stock"/>
      <xsl:apply-templates select="@boughtShown" mode="figure"/>
      <xsl:apply-templates select="@soldShown" mode="figure"/>
      <xsl:apply-templates select="@daysHeld" mode="figure"/>
      <xsl:apply-templates select="@number" mode="figure"/>
      <xsl:apply-templates select="@buyPriceShown" mode="figure"/>
      <xsl:apply-templates select="@sellPriceShown" mode="figure"/>
      <xsl:apply-templates select="@grossCostShown" mode="figure"/>
      <xsl:apply-templates select="@grossSaleShown" mode="figure"/>
      <xsl:apply-templates select="@grossProfitShown" mode="figure"/>
      <xsl:apply-templates select="@brokerageShown" mode="figure"/>
      <xsl:apply-templates select="@netProfitShown" mode="figure"/>
      <xsl:apply-templates select="@netGainShown" mode="figure"/>
    </tr>
    <xsl:if test="@comment != ''">
      <tr class="comment"><td class="t" colspan="13"><xsl:value-of select="@comment"/></td></tr>
    </xsl:if>
  </xsl:template>

  <xsl:template match="DividendsReport">
    <h3>Dividends received</h3>
    <xsl:if test="not(DividendReport)"><p>No dividends were received.</p></xsl:if>
    <xsl:if test="DividendReport">
      <table>
        <thead>
          <tr>
            <th>Received</th><th class="t">Code</th><th>On number</th><th>Rate</th><th>Value</th><th>Franked</th>
            <th>Franking credit</th><th class="t">Received as</th><th class="t">Foreign source</th>
            <th>Withholding tax</th>
          </tr>
        </thead>
        <tbody>
          <xsl:for-each select="DividendReport">
            <tr>
              <xsl:apply-templates select="@receivedShown" mode="figure"/>
              <xsl:call-template name="stock"/>
              <xsl:apply-templates select="@number" mode="figure"/>
              <xsl:apply-templates select="@rate" mode="figure"/>
              <xsl:apply-templates select="@valueShown" mode="figure"/>
              <xsl:apply-templates select="@percentFrankedShown" mode="figure"/>
              <xsl:apply-templates select="@frankingCreditShown" mode="figure"/>
              <td class="t"><xsl:value-of select="@receivedAs"/></td>
              <td class="t"><xsl:value-of select="@foreignSource"/></td>
              <xsl:apply-templates select="@withholdingTaxShown" mode="figure"/>
            </tr>
          </xsl:for-each>
        </tbody>
        <tbody class="totals">
          <tr>
            <td class="t">Totals</td><td/><td/><td/>
            <xsl:apply-templates select="@valueShown" mode="figure"/>
            <td/>
            <xsl:apply-templates select="@frankingCreditShown" mode="figure"/>
            <td class="t" colspan="2">
              <xsl:value-of select="@paidOutShown"/> paid out, <xsl:value-of select="@reinvestedShown"/> reinvested
            </td>
            <xsl:apply-templates select="@withholdingTaxShown" mode="figure"/>
          </tr>
        </tbody>
      </table>
    </xsl:if>
  </xsl:template>

  <xsl:template match="InterestsReport">
    <h3>Interest received</h3>
    <xsl:if test="not(InterestReport)"><p>No interest was received.</p></xsl:if>
    <xsl:if test="InterestReport">
      <table class="narrow">
        <thead>
          <tr><th class="d">Date</th><th class="t">Description</th><th>Amount</th></tr>
        </thead>
        <tbody>
          <xsl:for-each select="InterestReport">
            <tr>
              <td class="d"><xsl:value-of select="@dateShown"/></td>
              <td class="t"><xsl:value-of select="@description"/></td>
              <xsl:apply-templates select="@amountShown" mode="figure"/>
            </tr>
          </xsl:for-each>
        </tbody>
        <tbody class="totals">
          <tr>
            <td class="t">Total</td><td/><xsl:apply-templates select="@amountShown" mode="figure"/>
          </tr>
        </tbody>
      </table>
    </xsl:if>
  </xsl:template>

  <xsl:template match="CashFlowsReport">
    <h3>Cash</h3>
    <table class="narrow">
      <thead>
        <tr>
          <th class="d">Date</th><th class="t">Description</th><th>Credits</th><th>Debits</th>
          <th>Balance of the day</th>
        </tr>
      </thead>
      <tbody>
        <tr class="carried">
          <td class="d"/><td class="t">Cash before the period</td><td/><td/>
          <xsl:apply-templates select="@openingShown" mode="figure"/>
        </tr>
        <xsl:for-each select="CashFlowReport">
          <tr>
            <td class="d"><xsl:value-of select="@dateShown"/></td>
            <td class="t"><xsl:value-of select="@description"/></td>
            <xsl:apply-templates select="@creditShown" mode="figure"/>
            <xsl:apply-templates select="@debitShown" mode="figure"/>
            <xsl:apply-templates select="@balanceShown" mode="figure"/>
          </tr>
        </xsl:for-each>
      </tbody>
      <tbody class="totals">
        <tr>
          <td class="t">Totals</td>
          <td class="t">
            <xsl:value-of select="@depositsShown"/> deposited, <xsl:value-of select="@withdrawalsShown"/> withdrawn
          </td>
          <xsl:apply-templates select="@creditShown" mode="figure"/>
          <xsl:apply-templates select="@debitShown" mode="figure"/>
          <xsl:apply-templates select="@closingShown" mode="figure"/>
        </tr>
      </tbody>
    </table>
  </xsl:template>

  <!-- Cells -->

  <xsl:template match="@*" mode="figure">
    <td><xsl:value-of select="."/></td>
  </xsl:template>

  <!-- Figures stand to the right and are never broken; texts (t) and dates (d) stand to the left. On paper the
       head of a table is repeated on each page, and a wide table gets a sheet across. -->
  <xsl:template name="css">
    @page { size: A4 landscape; margin: 14mm 12mm; }
    * { box-sizing: border-box; }
    body { font: 10pt/1.35 "DejaVu Sans", "Liberation Sans", Arial, sans-serif; color: #1c1c1c; background: #fff;
      margin: 0 auto; padding: 1.5em; max-width: 76em; }
    .head { border-bottom: 2px solid #4f7327; margin-bottom: 1em; }
    h1 { font-size: 18pt; margin: 0; }
    .period { font-size: 12pt; margin: 0.2em 0; }
    .names { color: #555; margin: 0 0 0.6em 0; }
    h2 { font-size: 14pt; margin: 1.4em 0 0.4em 0; color: #3d5a1d; }
    h3 { font-size: 11pt; margin: 1.3em 0 0.4em 0; }
    p { margin: 0.4em 0; }
    .note { background: #fff6d8; border-left: 4px solid #d9a400; padding: 0.4em 0.7em; }
    .foot { color: #555; font-size: 8pt; border-top: 1px solid #bbb; margin-top: 2em; padding-top: 0.5em; }
    table { border-collapse: collapse; width: 100%; font-size: 8pt; font-variant-numeric: tabular-nums; }
    th, td { padding: 0.28em 0.5em; text-align: right; vertical-align: top; }
    th { border-bottom: 1px solid #666; font-weight: bold; vertical-align: bottom; }
    td { border-bottom: 1px solid #e2e2e2; white-space: nowrap; }
    th.t, td.t, th.d, td.d { text-align: left; }
    td.t { white-space: normal; overflow-wrap: anywhere; }
    .totals td { font-weight: bold; border-top: 1px solid #666; border-bottom: 1px solid #666; }
    .carried td, .comment td { color: #555; font-style: italic; }
    .name { color: #555; margin-left: 0.6em; }
    .comment td { padding-left: 2em; border-bottom: 1px solid #e2e2e2; white-space: pre-wrap; }
    .chart { margin: 1em 0; }
    .chart svg { width: 100%; height: auto; max-height: 26em; }
    @media print {
      body { padding: 0; max-width: none; font-size: 9pt; }
      .portfolio { page-break-before: always; }
      .portfolio.first { page-break-before: auto; }
      thead { display: table-header-group; }
      tr, .chart, .note { page-break-inside: avoid; }
      h2, h3 { page-break-after: avoid; }
      table { font-size: 7.5pt; }
      .chart svg { max-height: 22em; }
    }
  </xsl:template>
</xsl:stylesheet>
